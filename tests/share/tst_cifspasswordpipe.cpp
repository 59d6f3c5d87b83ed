// The cifs back-end hands the password to the mount program through a pipe only: a stand-in
// mount program records its arguments, environment, open descriptors and the temporary
// directory while the mount runs, which is what a process killed at that moment leaves.
#include "utilities/preconfiguration.h"
#include "utilities/windowssharemanager.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTcpServer>
#include <QTcpSocket>
#include <QtTest>

#include <memory>

namespace {
QByteArray decoded(const QJsonValue& value)
{
    return QByteArray::fromBase64(value.toString().toLatin1());
}

QByteArray readAll(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
} // namespace

class TestCifsPasswordPipe : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;  // mount points and the stand-in's record
    QTemporaryDir m_temp; // the temporary directory of the manager and of the stand-in
    QTcpServer m_server;  // answers the manager's server detection
    QByteArray m_oldTemp;

    QString recordPath() const { return m_dir.filePath(QStringLiteral("record.json")); }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_dir.isValid() && m_temp.isValid());
        QVERIFY(QFileInfo(QStringLiteral(STATION_FAKE_MOUNT)).isExecutable());
        connect(&m_server, &QTcpServer::newConnection, this, [this]() {
            while (QTcpSocket* connection = m_server.nextPendingConnection())
                connection->close();
        });
        QVERIFY(m_server.listen(QHostAddress::LocalHost));
        PreConfiguration::clear();
        PreConfiguration::setParameter(QStringLiteral("cifsMountProgramPath"), QStringLiteral(STATION_FAKE_MOUNT));
        m_oldTemp = qgetenv("TMPDIR");
        qputenv("TMPDIR", m_temp.path().toLocal8Bit());
        qputenv("STATION_TEST_MOUNT_RECORD", recordPath().toLocal8Bit());
    }

    void cleanupTestCase()
    {
        if (m_oldTemp.isNull())
            qunsetenv("TMPDIR");
        else
            qputenv("TMPDIR", m_oldTemp);
        qunsetenv("STATION_TEST_MOUNT_RECORD");
        PreConfiguration::clear();
    }

    void passwordGoesThroughThePipeOnly_data()
    {
        QTest::addColumn<QString>("password");
        QTest::addColumn<QString>("domain");
        QTest::newRow("plain") << "Secret123" << "";
        QTest::newRow("option separators, with a domain") << "a,b=c d" << "PLANT";
        QTest::newRow("percent sign and non-ASCII") << QString::fromUtf8("Pässwörd%42") << "";
        QTest::newRow("longest mount.cifs takes") << QString(512, QLatin1Char('k')) << "PLANT";
    }
    void passwordGoesThroughThePipeOnly()
    {
        QFETCH(QString, password);
        QFETCH(QString, domain);
        QFile::remove(recordPath());
        WindowsShareManager manager(QStringLiteral("127.0.0.1:%1").arg(m_server.serverPort()), domain,
                                    QStringLiteral("operator"), password, QStringLiteral("data"),
                                    m_dir.filePath(QStringLiteral("Share")), QStringLiteral("Share"), 1000);
        manager.setMaxMountAttempts(1);
        QSignalSpy failed(&manager, &WindowsShareManager::permanentMountFailure);
        manager.start();
        QVERIFY(failed.wait(30000));
        QCOMPARE(failed.at(0).at(0).toString(), QStringLiteral("mount error(13): Permission denied"));

        const QJsonObject record = QJsonDocument::fromJson(readAll(recordPath())).object();
        QVERIFY2(!record.isEmpty(), "the stand-in mount program did not run");
        const QByteArray secret = password.toUtf8();

        const QJsonObject environment = record.value("environment").toObject();
        const QStringList arguments = record.value("arguments").toVariant().toStringList();

        // While the mount runs, no argument, environment value (but the descriptor number), open
        // file, file of the temporary directory or file named by an option holds the password.
        for (const QString& argument : arguments)
            QVERIFY2(!argument.toUtf8().contains(secret), qPrintable(QStringLiteral("argument ") + argument));
        for (auto it = environment.begin(); it != environment.end(); ++it) {
            if (it.key() != QLatin1String("PASSWD_FD"))
                QVERIFY2(!it.value().toString().toUtf8().contains(secret), qPrintable(it.key()));
        }
        for (const QJsonValue& descriptor : record.value("descriptors").toArray()) {
            const QJsonObject entry = descriptor.toObject();
            QVERIFY2(!decoded(entry.value("content")).contains(secret),
                     qPrintable(QStringLiteral("open file ") + entry.value("target").toString()));
        }
        for (const char* list : {"tempFiles", "namedFiles"}) {
            for (const QJsonValue& file : record.value(QLatin1String(list)).toArray()) {
                QVERIFY2(!decoded(file.toObject().value("content")).contains(secret),
                         qPrintable(file.toObject().value("path").toString()));
            }
        }

        // The password arrives through the descriptor PASSWD_FD names, and that is a pipe.
        QVERIFY2(environment.contains("PASSWD_FD"), "no PASSWD_FD in the mount program's environment");
        QCOMPARE(environment.value("PASSWD_FD").toString(),
                 QString::number(record.value("passwordDescriptor").toInt()));
        QCOMPARE(record.value("passwordDescriptorType").toString(), QStringLiteral("pipe"));
        QCOMPARE(decoded(record.value("passwordRead")), secret);

        // The user name and domain still reach mount.cifs through its credentials file.
        QCOMPARE(arguments.mid(0, 2), (QStringList {"-t", "cifs"}));
        const QStringList options = arguments.last().split(QLatin1Char(','));
        const QStringList named = options.filter(QRegularExpression(QStringLiteral("^credentials=")));
        QCOMPARE(named.size(), 1);
        const QString credentialsFile = named.first().mid(int(qstrlen("credentials=")));
        QByteArray credentials;
        for (const QJsonValue& file : record.value("namedFiles").toArray()) {
            if (file.toObject().value("path").toString() == credentialsFile)
                credentials = decoded(file.toObject().value("content"));
        }
        const QList<QByteArray> lines = credentials.split('\n');
        QVERIFY2(lines.contains("username=operator"), credentials.constData());
        QCOMPARE(lines.contains("domain=" + domain.toUtf8()), !domain.isEmpty());

        // Nothing stays behind after the attempt.
        QCOMPARE(QDir(m_temp.path()).entryList(QDir::Files | QDir::Hidden), QStringList());
    }
};

QTEST_GUILESS_MAIN(TestCifsPasswordPipe)
#include "tst_cifspasswordpipe.moc"
