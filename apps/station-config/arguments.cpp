#include "arguments.h"

#include <QRegularExpression>

namespace {
// "-5", "-0.5", "-1e3": values, not options.
bool isNegativeNumber(const QString& text)
{
    static const QRegularExpression number(QStringLiteral("^-(\\d+\\.?\\d*|\\.\\d+)([eE][-+]?\\d+)?$"));
    return number.match(text).hasMatch();
}
}

Arguments::Arguments(QList<OptionSpec> options, QList<CommandSpec> commands)
    : m_options(std::move(options))
    , m_commands(std::move(commands))
{
}

const OptionSpec* Arguments::option(const QString& name) const
{
    for (const OptionSpec& spec : m_options) {
        if (spec.name == name)
            return &spec;
    }
    return nullptr;
}

const CommandSpec* Arguments::commandSpec(const QString& name) const
{
    for (const CommandSpec& spec : m_commands) {
        if (spec.name == name)
            return &spec;
    }
    return nullptr;
}

bool Arguments::parse(const QStringList& arguments, QString& error)
{
    QList<QPair<QString, QString>> given;  // option name, as written
    bool optionsEnded = false;
    for (int i = 0; i < arguments.size(); ++i) {
        const QString& argument = arguments.at(i);
        if (optionsEnded || argument == QLatin1String("-") || !argument.startsWith(QLatin1Char('-'))
            || isNegativeNumber(argument)) {
            if (m_command.isEmpty())
                m_command = argument;
            else
                m_positional << argument;
            continue;
        }
        if (argument == QLatin1String("--")) {
            optionsEnded = true;
            continue;
        }
        if (argument == QLatin1String("-h") || argument == QLatin1String("--help")) {
            m_help = true;
            return true;
        }
        if (!argument.startsWith(QLatin1String("--"))) {
            error = QStringLiteral("unknown option '%1'").arg(argument);
            return false;
        }
        QString name = argument.mid(2);
        QString value;
        bool inlineValue = false;
        const int equals = name.indexOf(QLatin1Char('='));
        if (equals >= 0) {
            value = name.mid(equals + 1);
            name.truncate(equals);
            inlineValue = true;
        }
        const OptionSpec* spec = option(name);
        if (!spec) {
            error = QStringLiteral("unknown option '--%1'").arg(name);
            return false;
        }
        if (spec->valueName.isEmpty()) {
            if (inlineValue) {
                error = QStringLiteral("option '--%1' takes no value").arg(name);
                return false;
            }
        } else if (!inlineValue) {
            if (i + 1 >= arguments.size()) {
                error = QStringLiteral("option '--%1' needs a value (%2)").arg(name, spec->valueName);
                return false;
            }
            value = arguments.at(++i);
        }
        if (m_values.contains(name)) {
            error = QStringLiteral("option '--%1' given twice").arg(name);
            return false;
        }
        m_values.insert(name, value);
        given.append({ name, argument });
    }

    if (m_command.isEmpty()) {
        error = QStringLiteral("no command given");
        return false;
    }
    const CommandSpec* command = commandSpec(m_command);
    if (!command) {
        error = QStringLiteral("unknown command '%1'").arg(m_command);
        return false;
    }
    for (const auto& entry : given) {
        const OptionSpec* spec = option(entry.first);
        if (!spec->commands.isEmpty() && !spec->commands.contains(m_command)) {
            error = QStringLiteral("option '--%1' is not an option of '%2' (it belongs to %3)")
                        .arg(entry.first, m_command, spec->commands.join(QStringLiteral(", ")));
            return false;
        }
    }
    const int count = m_positional.size();
    if (count < command->minArguments || (command->maxArguments >= 0 && count > command->maxArguments)) {
        error = count < command->minArguments
            ? QStringLiteral("'%1' needs more arguments").arg(m_command)
            : QStringLiteral("'%1' does not take the argument '%2'").arg(m_command, m_positional.at(command->maxArguments));
        error += QStringLiteral("\nusage: station-config %1").arg(command->usage);
        return false;
    }
    return true;
}

bool Arguments::intValue(const QString& name, int minimum, int& result, QString& error) const
{
    bool ok = false;
    result = value(name).toInt(&ok);
    if (!ok || result < minimum) {
        error = QStringLiteral("option '--%1': '%2' is not a whole number of at least %3").arg(name, value(name)).arg(minimum);
        return false;
    }
    return true;
}

QString Arguments::helpText(const QString& logFile) const
{
    QString text = QStringLiteral("Usage: station-config [OPTIONS] COMMAND [ARGUMENTS]\n"
                                  "Shows and changes an assembly station's configuration.\n\nCommands:\n");
    for (const CommandSpec& command : m_commands)
        text += QStringLiteral("  %1\n      %2\n").arg(command.usage, command.description);
    text += QStringLiteral("\nOptions:\n");
    for (const OptionSpec& spec : m_options) {
        QString head = QStringLiteral("--") + spec.name;
        if (!spec.valueName.isEmpty())
            head += QLatin1Char(' ') + spec.valueName;
        QString description = spec.description;
        if (!spec.commands.isEmpty())
            description = spec.commands.join(QStringLiteral(", ")) + QStringLiteral(": ") + description;
        text += QStringLiteral("  %1 %2\n").arg(head, -20).arg(description);
    }
    text += QStringLiteral("  %1 %2\n").arg(QStringLiteral("-h, --help"), -20).arg(QStringLiteral("This help."));
    text += QStringLiteral(
        "\nExit codes: 0 success, 1 the operation failed, 2 usage error, 3 the settings document is\n"
        "unusable (nothing was changed), 4 a wait timed out.\n"
        "Station: --station DIR, else $STATION_DIR, else a writable copy of the demo station.\n"
        "Negative numbers are values; any other value starting with '-' goes after '--'.\n");
    if (!logFile.isEmpty())
        text += QStringLiteral("Log file: %1 (on standard error too with --verbose)\n").arg(logFile);
    return text;
}
