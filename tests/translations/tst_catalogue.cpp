#include <QCoreApplication>
#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <QTranslator>
#include <QXmlStreamReader>
#include <QtTest>

// Every translation id the code uses must have a text in each language's catalogue, or the
// person at the station reads a raw id (or, through the English fallback, another language).
class TestCatalogue : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void everyIdIsTranslated_data();
    void everyIdIsTranslated();

private:
    struct Message
    {
        QString source;
        QString translation;
        bool unfinished = false;
    };
    static QHash<QString, Message> readCatalogue(const QString& path, QString* error);
    static QStringList placeholders(const QString& text);

    QSet<QString> m_ids;
};

void TestCatalogue::initTestCase()
{
    static const QRegularExpression call(QStringLiteral("qsTrId\\(\\s*\"([^\"]+)\"|qtTrId\\(\\s*\"([^\"]+)\""));
    for (const char* folder : { "lib_configuration", "platform", "apps" }) {
        QDirIterator it(QStringLiteral(STATION_SOURCE_DIR "/") + QLatin1String(folder),
                        { "*.cpp", "*.h", "*.qml" }, QDir::Files, QDirIterator::Subdirectories);
        while (it.hasNext()) {
            QFile file(it.next());
            QVERIFY(file.open(QIODevice::ReadOnly));
            auto matches = call.globalMatch(QString::fromUtf8(file.readAll()));
            while (matches.hasNext()) {
                const auto match = matches.next();
                m_ids.insert(match.captured(1).isEmpty() ? match.captured(2) : match.captured(1));
            }
        }
    }
    QVERIFY2(m_ids.size() >= 30, "the scan found too few ids; is the source tree where it should be?");
}

QHash<QString, TestCatalogue::Message> TestCatalogue::readCatalogue(const QString& path, QString* error)
{
    QHash<QString, Message> messages;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        *error = file.errorString();
        return messages;
    }
    QXmlStreamReader xml(&file);
    QString id;
    Message message;
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isStartElement() && xml.name() == QLatin1String("message")) {
            id = xml.attributes().value(QLatin1String("id")).toString();
            message = Message();
        } else if (xml.isStartElement() && xml.name() == QLatin1String("source")) {
            message.source = xml.readElementText();
        } else if (xml.isStartElement() && xml.name() == QLatin1String("translation")) {
            message.unfinished = xml.attributes().value(QLatin1String("type")) == QLatin1String("unfinished");
            message.translation = xml.readElementText();
        } else if (xml.isEndElement() && xml.name() == QLatin1String("message")) {
            messages.insert(id, message);
        }
    }
    if (xml.hasError())
        *error = QStringLiteral("line %1: %2").arg(xml.lineNumber()).arg(xml.errorString());
    return messages;
}

QStringList TestCatalogue::placeholders(const QString& text)
{
    static const QRegularExpression placeholder(QStringLiteral("%\\d"));
    QStringList found;
    auto matches = placeholder.globalMatch(text);
    while (matches.hasNext())
        found << matches.next().captured();
    found.sort();
    return found;
}

void TestCatalogue::everyIdIsTranslated_data()
{
    QTest::addColumn<QString>("language");
    for (const char* language : { "en", "fr", "de", "es", "it" })
        QTest::newRow(language) << QString::fromLatin1(language);
}

void TestCatalogue::everyIdIsTranslated()
{
    QFETCH(QString, language);
    QString error;
    const QHash<QString, Message> english =
        readCatalogue(QStringLiteral(STATION_SOURCE_DIR "/translations/station_en.ts"), &error);
    const QHash<QString, Message> messages =
        readCatalogue(QStringLiteral(STATION_SOURCE_DIR "/translations/station_%1.ts").arg(language), &error);
    QVERIFY2(error.isEmpty(), qPrintable(error));

    QStringList missing;
    QStringList wrongPlaceholders;
    int asInEnglish = 0;
    for (const QString& id : qAsConst(m_ids)) {
        const Message message = messages.value(id);
        if (message.translation.trimmed().isEmpty() || message.unfinished) {
            missing << id;
            continue;
        }
        if (placeholders(message.translation) != placeholders(english.value(id).source))
            wrongPlaceholders << id;
        if (message.translation == english.value(id).translation)
            ++asInEnglish;
    }
    missing.sort();
    wrongPlaceholders.sort();
    QVERIFY2(missing.isEmpty(), qPrintable(QStringLiteral("ids without text: ") + missing.join(", ")));
    QVERIFY2(wrongPlaceholders.isEmpty(),
             qPrintable(QStringLiteral("placeholders differ from English: ") + wrongPlaceholders.join(", ")));
    // Words such as "Alias" or "Version %1" may stay as they are; a catalogue mostly in English does not.
    if (language != QLatin1String("en"))
        QVERIFY2(asInEnglish * 10 < m_ids.size(), qPrintable(QString::number(asInEnglish) + " texts as in English"));

    // The compiled catalogue answers for every id.
    QTranslator catalogue;
    QVERIFY2(catalogue.load(QStringLiteral("station_") + language, QStringLiteral(STATION_CATALOGUE_DIR)),
             "the catalogue was not built");
    for (const QString& id : qAsConst(m_ids))
        QVERIFY2(!catalogue.translate(nullptr, id.toUtf8().constData()).isEmpty(), qPrintable(id));
}

QTEST_GUILESS_MAIN(TestCatalogue)
#include "tst_catalogue.moc"
