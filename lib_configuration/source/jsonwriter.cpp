#include "jsonwriter.h"

#include <QCborArray>
#include <QCborMap>
#include <QCborValue>
#include <QLocale>
#include <QString>

#include <cerrno>
#include <cmath>
#include <cstring>

#ifdef Q_OS_UNIX
#include <unistd.h>
#else
#include <io.h>
#endif

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace {
constexpr qsizetype C_flushSize = 256 * 1024;
const char C_spaces[] = "                                                                ";
constexpr int C_spaceCount = int(sizeof(C_spaces) - 1);

inline char hexDigit(uint value)
{
    return char(value < 10 ? '0' + value : 'a' + value - 10);
}

// Output of one document: a growing buffer, or a bounded one emptied into a descriptor.
class Output
{
public:
    explicit Output(int fd, int capacity = 4096)
        : m_fd(fd)
    {
        m_buffer.resize(fd >= 0 ? int(C_flushSize) : capacity);
    }

    // Room for `bytes` more at the cursor.
    char* reserve(qsizetype bytes)
    {
        if (m_size + bytes > m_buffer.size()) {
            if (m_fd >= 0)
                flush();
            if (m_size + bytes > m_buffer.size())
                m_buffer.resize(int(qMax<qsizetype>(qsizetype(m_buffer.size()) * 2, m_size + bytes)));
        }
        return m_buffer.data() + m_size;
    }
    void advance(char* cursor) { m_size = cursor - m_buffer.data(); }

    void append(const char* text, qsizetype length)
    {
        std::memcpy(reserve(length), text, size_t(length));
        m_size += length;
    }
    void append(char c) { *reserve(1) = c; ++m_size; }
    void indent(int levels)
    {
        for (int spaces = 4 * levels; spaces > 0; spaces -= C_spaceCount)
            append(C_spaces, qMin(spaces, C_spaceCount));
    }

    bool flush()
    {
        for (qsizetype done = 0; done < m_size && m_ok;) {
#ifdef Q_OS_UNIX
            const ssize_t n = ::write(m_fd, m_buffer.constData() + done, size_t(m_size - done));
#else
            const int n = ::_write(m_fd, m_buffer.constData() + done, unsigned(m_size - done));
#endif
            if (n < 0 && errno == EINTR)
                continue;
            if (n <= 0) {
                if (n == 0)
                    errno = EIO;
                m_ok = false;
                break;
            }
            done += n;
        }
        m_size = 0;
        return m_ok;
    }
    bool ok() const { return m_ok; }
    QByteArray take()
    {
        m_buffer.resize(int(m_size));
        return std::move(m_buffer);
    }

private:
    QByteArray m_buffer;
    qsizetype m_size = 0;
    int m_fd;
    bool m_ok = true;
};

// What QJsonDocument writes for a string: UTF-8, with '"', '\\' and control characters escaped,
// and a UTF-16 unit that is not part of a valid pair as \uXXXX.
void writeString(Output& out, const QString& text)
{
    const auto* p = reinterpret_cast<const char16_t*>(text.constData());
    const char16_t* const end = p + text.size();
    char* cursor = out.reserve(6 * (end - p) + 2);
    *cursor++ = '"';
    while (p < end) {
#if defined(__SSE2__)
        const __m128i space = _mm_set1_epi16(0x20);
        const __m128i ascii = _mm_set1_epi16(0x7f);
        const __m128i quote = _mm_set1_epi16('"');
        const __m128i backslash = _mm_set1_epi16('\\');
        while (end - p >= 8) {
            const __m128i units = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
            // Signed: units from 0x8000 are negative, hence below the space.
            __m128i special = _mm_or_si128(_mm_cmplt_epi16(units, space), _mm_cmpgt_epi16(units, ascii));
            special = _mm_or_si128(special, _mm_or_si128(_mm_cmpeq_epi16(units, quote), _mm_cmpeq_epi16(units, backslash)));
            if (_mm_movemask_epi8(special) != 0)
                break;
            _mm_storel_epi64(reinterpret_cast<__m128i*>(cursor), _mm_packus_epi16(units, units));
            p += 8;
            cursor += 8;
        }
        if (p == end)
            break;
#endif
        const uint u = *p++;
        if (u >= 0x20 && u < 0x80 && u != '"' && u != '\\') {
            *cursor++ = char(u);
        } else if (u < 0x80) {
            *cursor++ = '\\';
            switch (u) {
            case '"': *cursor++ = '"'; break;
            case '\\': *cursor++ = '\\'; break;
            case '\b': *cursor++ = 'b'; break;
            case '\f': *cursor++ = 'f'; break;
            case '\n': *cursor++ = 'n'; break;
            case '\r': *cursor++ = 'r'; break;
            case '\t': *cursor++ = 't'; break;
            default:
                *cursor++ = 'u';
                *cursor++ = '0';
                *cursor++ = '0';
                *cursor++ = hexDigit(u >> 4);
                *cursor++ = hexDigit(u & 0xf);
            }
        } else if (u < 0x800) {
            *cursor++ = char(0xc0 | (u >> 6));
            *cursor++ = char(0x80 | (u & 0x3f));
        } else if (!QChar::isSurrogate(u)) {
            *cursor++ = char(0xe0 | (u >> 12));
            *cursor++ = char(0x80 | ((u >> 6) & 0x3f));
            *cursor++ = char(0x80 | (u & 0x3f));
        } else if (QChar::isHighSurrogate(u) && p < end && QChar::isLowSurrogate(*p)) {
            const uint code = QChar::surrogateToUcs4(char16_t(u), *p++);
            *cursor++ = char(0xf0 | (code >> 18));
            *cursor++ = char(0x80 | ((code >> 12) & 0x3f));
            *cursor++ = char(0x80 | ((code >> 6) & 0x3f));
            *cursor++ = char(0x80 | (code & 0x3f));
        } else {
            *cursor++ = '\\';
            *cursor++ = 'u';
            *cursor++ = hexDigit((u >> 12) & 0xf);
            *cursor++ = hexDigit((u >> 8) & 0xf);
            *cursor++ = hexDigit((u >> 4) & 0xf);
            *cursor++ = hexDigit(u & 0xf);
        }
    }
    *cursor++ = '"';
    out.advance(cursor);
}

void writeValue(Output& out, const QCborValue& value, int indent, bool compact);

void writeArrayContent(Output& out, const QCborArray& array, int indent, bool compact)
{
    const qsizetype count = array.size();
    for (qsizetype i = 0; i < count; ++i) {
        if (!compact)
            out.indent(indent);
        writeValue(out, array.at(i), indent, compact);
        if (i + 1 < count)
            out.append(compact ? "," : ",\n", compact ? 1 : 2);
        else if (!compact)
            out.append('\n');
    }
}

void writeObjectContent(Output& out, const QCborMap& map, int indent, bool compact)
{
    const auto end = map.constEnd();
    for (auto it = map.constBegin(); it != end;) {
        if (!compact)
            out.indent(indent);
        writeString(out, it.key().toString());
        out.append(compact ? ":" : ": ", compact ? 1 : 2);
        writeValue(out, it.value(), indent, compact);
        if (++it != end)
            out.append(compact ? "," : ",\n", compact ? 1 : 2);
        else if (!compact)
            out.append('\n');
    }
}

void writeValue(Output& out, const QCborValue& value, int indent, bool compact)
{
    switch (value.type()) {
    case QCborValue::True:
        out.append("true", 4);
        break;
    case QCborValue::False:
        out.append("false", 5);
        break;
    case QCborValue::Integer:
    case QCborValue::Double: {
        const double number = value.toDouble();
        if (std::isfinite(number)) {
            const QByteArray text = QByteArray::number(number, 'g', QLocale::FloatingPointShortest);
            out.append(text.constData(), text.size());
        } else {
            out.append("null", 4);
        }
        break;
    }
    case QCborValue::String:
        writeString(out, value.toString());
        break;
    case QCborValue::Array:
        out.append(compact ? "[" : "[\n", compact ? 1 : 2);
        writeArrayContent(out, value.toArray(), indent + (compact ? 0 : 1), compact);
        if (!compact)
            out.indent(indent);
        out.append(']');
        break;
    case QCborValue::Map:
        out.append(compact ? "{" : "{\n", compact ? 1 : 2);
        writeObjectContent(out, value.toMap(), indent + (compact ? 0 : 1), compact);
        if (!compact)
            out.indent(indent);
        out.append('}');
        break;
    default:
        out.append("null", 4);
    }
}

void writeDocument(Output& out, const QJsonObject& object, QJsonDocument::JsonFormat format)
{
    const bool compact = format == QJsonDocument::Compact;
    out.append(compact ? "{" : "{\n", compact ? 1 : 2);
    writeObjectContent(out, QCborMap::fromJsonObject(object), compact ? 0 : 1, compact);
    out.append(compact ? "}" : "}\n", compact ? 1 : 2);
}

void writeDocument(Output& out, const QJsonArray& array, QJsonDocument::JsonFormat format)
{
    const bool compact = format == QJsonDocument::Compact;
    out.append(compact ? "[" : "[\n", compact ? 1 : 2);
    writeArrayContent(out, QCborArray::fromJsonArray(array), compact ? 0 : 1, compact);
    out.append(compact ? "]" : "]\n", compact ? 1 : 2);
}
}

QByteArray JsonWriter::toJson(const QJsonObject& object, QJsonDocument::JsonFormat format)
{
    Output out(-1);
    writeDocument(out, object, format);
    return out.take();
}

QByteArray JsonWriter::toJson(const QJsonValue& value)
{
    Output out(-1);
    writeValue(out, QCborValue::fromJsonValue(value), 0, true);
    return out.take();
}

QByteArray JsonWriter::toJson(const QJsonArray& array, QJsonDocument::JsonFormat format)
{
    Output out(-1);
    writeDocument(out, array, format);
    return out.take();
}

QByteArray JsonWriter::quoted(const QString& text)
{
    Output out(-1, 6 * text.size() + 2);
    writeString(out, text);
    return out.take();
}

bool JsonWriter::write(int fd, const QJsonObject& object, QJsonDocument::JsonFormat format)
{
    Output out(fd);
    writeDocument(out, object, format);
    return out.flush();
}

bool JsonWriter::write(int fd, const QJsonArray& array, QJsonDocument::JsonFormat format)
{
    Output out(fd);
    writeDocument(out, array, format);
    return out.flush();
}
