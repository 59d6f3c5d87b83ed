// station-config as a user meets it: for each command, arguments -> exit code, standard
// output, standard error, and what the settings document holds afterwards.
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

namespace {
const QString C_tool = QStringLiteral(STATION_CONFIG_BINARY);

struct Run {
    int code = -1;
    QString out;
    QString err;
};

bool copyTree(const QString& source, const QString& target)
{
    QDir().mkpath(target);
    QDirIterator it(source, QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        it.next();
        const QString destination = target + '/' + QDir(source).relativeFilePath(it.filePath());
        if (it.fileInfo().isDir() ? !QDir().mkpath(destination) : !QFile::copy(it.filePath(), destination))
            return false;
        QFile::setPermissions(destination, QFile::permissions(destination) | QFile::WriteOwner);
    }
    return true;
}

QJsonObject readJson(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QJsonDocument::fromJson(file.readAll()).object();
}

// The value at a dotted path of a JSON object.
QJsonValue valueAt(const QJsonObject& root, const QString& path)
{
    QJsonValue value = root;
    for (const QString& part : path.split('.'))
        value = value.toObject().value(part);
    return value;
}
}

class TestStationConfig : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    QString m_station;

    QString document() const { return m_station + "/config/settings.json"; }

    // Runs the tool with a private home (cache, demo copy) and, unless `explicitStation` is
    // false, on the test's station; "@station" in an argument is replaced by its directory.
    Run run(QStringList arguments, bool explicitStation = true, const QString& stationEnv = QString(),
            const QByteArray& input = QByteArray()) const
    {
        for (QString& argument : arguments)
            argument.replace("@station", m_station);
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("XDG_DATA_HOME", m_dir.path() + "/data");
        environment.insert("XDG_CACHE_HOME", m_dir.path() + "/cache");
        environment.insert("XDG_STATE_HOME", m_dir.path() + "/state");
        environment.remove("STATION_DIR");
        if (!stationEnv.isEmpty())
            environment.insert("STATION_DIR", QString(stationEnv).replace("@station", m_station));
        process.setProcessEnvironment(environment);
        process.start(C_tool, (explicitStation ? QStringList{"--station", m_station} : QStringList()) + arguments);
        process.write(input);
        process.closeWriteChannel();
        Run result;
        if (!process.waitForFinished(120000)) {
            process.kill();
            process.waitForFinished();
            result.err = "timed out";
            return result;
        }
        result.code = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
        result.out = QString::fromUtf8(process.readAllStandardOutput());
        result.err = QString::fromUtf8(process.readAllStandardError());
        return result;
    }

    static void verifyMatches(const QString& text, const QString& pattern, const char* stream)
    {
        if (pattern.isEmpty()) {
            QVERIFY2(text.isEmpty(), qPrintable(QString("%1 should be empty: %2").arg(stream, text)));
            return;
        }
        const QRegularExpression expression(pattern, QRegularExpression::DotMatchesEverythingOption);
        QVERIFY2(expression.isValid(), qPrintable(pattern));
        QVERIFY2(expression.match(text).hasMatch(),
                 qPrintable(QString("%1 does not match /%2/:\n%3").arg(stream, pattern, text)));
    }

private slots:
    void init()
    {
        QVERIFY(m_dir.isValid());
        m_station = m_dir.path() + "/station";
        QDir(m_station).removeRecursively();
        QVERIFY(copyTree(QStringLiteral(STATION_DEMO_DIR), m_station));
    }

    void command_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("out");   // regular expression; empty: nothing printed
        QTest::addColumn<QString>("err");
        // "key=JSON": what the document holds afterwards; empty: not checked.
        QTest::addColumn<QString>("after");

        const QString any = ".*";
        const QString usage = "^station-config: %1\nTry 'station-config --help'.\n$";

        // Usage errors: exit 2, one reason, nothing on standard output.
        QTest::newRow("usage: no command") << QStringList{"--json"} << 2 << "" << usage.arg("no command given") << "";
        QTest::newRow("usage: help names the program")
            << QStringList{"--help"} << 0 << "^Usage: station-config \\[OPTIONS\\] COMMAND.*Exit codes: 0 success" << "" << "";
        QTest::newRow("usage: unknown option") << QStringList{"--bogus", "status"} << 2 << "" << usage.arg("unknown option '--bogus'") << "";
        QTest::newRow("usage: unknown command") << QStringList{"bogus"} << 2 << "" << usage.arg("unknown command 'bogus'") << "";
        QTest::newRow("usage: extra argument") << QStringList{"status", "extra"} << 2 << ""
                                               << "'status' does not take the argument 'extra'\nusage: station-config status\n" << "";
        QTest::newRow("usage: option of another command")
            << QStringList{"storage", "--now"} << 2 << "" << usage.arg("option '--now' is not an option of 'storage' \\(it belongs to sync\\)") << "";
        QTest::newRow("usage: malformed value") << QStringList{"folders", "--wait", "abc"} << 2 << ""
                                                << "option '--wait': 'abc' is not a whole number" << "";
        QTest::newRow("usage: missing value") << QStringList{"folders", "--wait"} << 2 << ""
                                              << usage.arg("option '--wait' needs a value \\(SECONDS\\)") << "";
        QTest::newRow("usage: missing argument") << QStringList{"get"} << 2 << "" << "'get' needs more arguments\nusage: station-config get KEY" << "";
        QTest::newRow("usage: exclusive options") << QStringList{"sync", "--now", "--reset"} << 2 << "" << "exclude each other" << "";
        QTest::newRow("usage: test-share without user") << QStringList{"test-share", "127.0.0.1", "x"} << 2 << "" << "needs '--user USER'" << "";
        QTest::newRow("usage: flag with a value") << QStringList{"status", "--json=yes"} << 2 << "" << "takes no value" << "";

        // A wait that runs out: exit 4 and one line naming what did not settle (no server on the demo share).
        QTest::newRow("folders: wait times out") << QStringList{"folders", "--wait", "1"} << 4 << "Plant_Share .* no \\("
                                                 << "^station-config: timed out after 1 s waiting for Plant_Share\n$" << "";

        // Quiet by default: the library's log lines go to the tool's log file, to stderr with --verbose.
        const QString logFile = "/state/station-config/station-config.log";
        QTest::newRow("quiet: help names the log file") << QStringList{"--help"} << 0 << "\nLog file: [^\n]*" + logFile << "" << "";
        QTest::newRow("quiet: status names the log file") << QStringList{"status"} << 0 << "\nlog +[^\n]*" + logFile + "\n" << "" << "";
        QTest::newRow("quiet: folders") << QStringList{"folders"} << 0 << "Plant_Share" << "" << "";
        QTest::newRow("quiet: verbose folders") << QStringList{"folders", "--verbose"} << 0 << "Plant_Share"
                                                << "ERROR: Failure to access the alias folder: Plant_Share" << "";

        // History commands follow the same conventions.
        QTest::newRow("history: extra argument") << QStringList{"history", "1"} << 2 << "" << "does not take the argument '1'" << "";
        QTest::newRow("history: none kept yet") << QStringList{"history"} << 0 << "^no version of .* is kept yet\n$" << "" << "";
        QTest::newRow("rollback: no version") << QStringList{"rollback"} << 2 << "" << "needs more arguments" << "";
        QTest::newRow("rollback: not a number") << QStringList{"rollback", "x"} << 2 << "" << "not a version number: x" << "";
        QTest::newRow("rollback: not kept") << QStringList{"rollback", "99"} << 1 << "" << "^station-config: no version is kept in .*settings.json.history\n$" << "";
        QTest::newRow("diff: two versions") << QStringList{"diff", "0", "1"} << 2 << "" << "does not take the argument '1'" << "";
    }

    // What the library logs lands in the tool's log file, one line per message with the command.
    void logFileKeepsLibraryLines()
    {
        const QString path = m_dir.path() + "/state/station-config/station-config.log";
        QFile::remove(path);
        const Run result = run({"folders"});
        QCOMPARE(result.code, 0);
        QVERIFY2(result.err.isEmpty(), qPrintable(result.err));
        QFile log(path);
        QVERIFY(log.open(QIODevice::ReadOnly));
        const QString text = QString::fromUtf8(log.readAll());
        QVERIFY2(text.contains(QRegularExpression("\\[\\d+\\] --station \\S+ folders critical: .*Failure to access the alias folder: Plant_Share")),
                 qPrintable(text));
    }

    void command()
    {
        QFETCH(QStringList, arguments);
        QFETCH(int, code);
        QFETCH(QString, out);
        QFETCH(QString, err);
        QFETCH(QString, after);

        const Run result = run(arguments);
        QVERIFY2(result.code == code, qPrintable(QString("exit %1, expected %2\nstdout: %3\nstderr: %4")
                                                     .arg(result.code).arg(code).arg(result.out, result.err)));
        verifyMatches(result.out, out, "stdout");
        verifyMatches(result.err, err, "stderr");
        if (!after.isEmpty()) {
            const int equals = after.indexOf('=');
            const QJsonValue expected = QJsonDocument::fromJson("[" + after.mid(equals + 1).toUtf8() + "]").array().first();
            QCOMPARE(valueAt(readJson(document()), after.left(equals)), expected);
        }
    }
};

QTEST_GUILESS_MAIN(TestStationConfig)
#include "tst_stationconfig.moc"
