#pragma once
#include <QMap>
#include <QString>
#include <QStringList>

// The command line of station-config: global options, one command, its arguments and options.
// Any usage error (unknown option, option of another command, missing or malformed value,
// wrong number of arguments) is reported by `parse` and ends the program with exit code 2.
struct OptionSpec {
    QString name;          // long name without the dashes
    QString valueName;     // empty for a flag
    QString description;
    QStringList commands;  // empty: accepted by every command
};

struct CommandSpec {
    QString name;
    QString usage;         // "set KEY VALUE"
    QString description;
    int minArguments = 0;
    int maxArguments = 0;  // -1: any number
};

class Arguments
{
public:
    Arguments(QList<OptionSpec> options, QList<CommandSpec> commands);

    // Reads argv (without the program name). False on a usage error, described by `error`.
    // "--help" anywhere sets `helpRequested` and stops the checks.
    bool parse(const QStringList& arguments, QString& error);

    bool helpRequested() const { return m_help; }
    QString command() const { return m_command; }
    QStringList positional() const { return m_positional; }
    bool isSet(const QString& option) const { return m_values.contains(option); }
    QString value(const QString& option) const { return m_values.value(option); }
    // A whole number >= minimum given to an option; false with `error` when it is not one.
    bool intValue(const QString& option, int minimum, int& result, QString& error) const;

    const QList<OptionSpec>& options() const { return m_options; }
    const QList<CommandSpec>& commands() const { return m_commands; }
    const CommandSpec* commandSpec(const QString& name) const;
    QString helpText(const QString& logFile) const;

private:
    const OptionSpec* option(const QString& name) const;

    QList<OptionSpec> m_options;
    QList<CommandSpec> m_commands;
    QString m_command;
    QStringList m_positional;
    QMap<QString, QString> m_values;
    bool m_help = false;
};
