// The shipped Ansible module on three local stations: a first run changes each of them, a
// second changes nothing, and a change made by hand is reported by a run in check mode, which
// leaves it in place.
#include <QStandardPaths>
#include <QTemporaryDir>

#include "stationtool.h"

namespace {
const QStringList c_hosts { "station1", "station2", "station3" };

QJsonObject readDocument(const QString& station) { return readJson(station + "/config/settings.json"); }
}

class TestAnsiblePlaybook : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    QString m_program;

    QString station(const QString& host) const { return m_dir.path() + "/" + host; }

private slots:
    void initTestCase()
    {
        m_program = QStandardPaths::findExecutable("ansible-playbook");
        if (m_program.isEmpty())
            QSKIP("ansible-playbook is not installed (Debian package ansible-core; scripts/setup.sh installs it)");
        QVERIFY(m_dir.isValid());
        QString inventory = "[stations]\n";
        for (const QString& host : c_hosts) {
            QVERIFY(copyTree(QStringLiteral(STATION_DEMO_DIR), station(host)));
            inventory += host + " station_dir=" + station(host) + "\n";
        }
        inventory += "[stations:vars]\nansible_connection=local\nansible_python_interpreter=/usr/bin/python3\n"
                      "station_tool=" STATION_CONFIG_BINARY "\n";
        QFile file(m_dir.path() + "/inventory");
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(inventory.toUtf8()) > 0);
    }

    void runs_data()
    {
        QTest::addColumn<QStringList>("drift");    // station-config arguments run on station2 first
        QTest::addColumn<QStringList>("options");  // of ansible-playbook
        QTest::addColumn<QList<int>>("changed");   // "changed=" of each host in the recap
        QTest::addColumn<QString>("out");          // expected in the output

        QTest::newRow("first run changes every station") << QStringList() << QStringList() << QList<int> { 1, 1, 1 } << "";
        QTest::newRow("second run changes nothing") << QStringList() << QStringList() << QList<int> { 0, 0, 0 } << "";
        QTest::newRow("a value changed by hand, found in check mode")
            << QStringList { "set", "general.sound_volume", "60" } << QStringList { "--check", "--diff" } << QList<int> { 0, 1, 0 }
            << "--- before: general.sound_volume\n\\+\\+\\+ after: general.sound_volume\n@@ -1 \\+1 @@\n-60\n\\+55\n";
        QTest::newRow("a relation changed by hand, found in check mode")
            << QStringList { "relation-set", "9", "other" } << QStringList { "--check", "--diff" } << QList<int> { 0, 1, 0 }
            << "-  \"sequenceBaseName\": \"other\"\n\\+  \"sequenceBaseName\": \"cover_plate_left\"";
    }

    void runs()
    {
        QFETCH(QStringList, drift);
        QFETCH(QStringList, options);
        QFETCH(QList<int>, changed);
        QFETCH(QString, out);

        QProcessEnvironment environment = toolEnvironment(m_dir.path() + "/state");
        if (!drift.isEmpty())
            QCOMPARE(runTool(STATION_CONFIG_BINARY, QStringList { "--station", station("station2") } + drift, environment).code, 0);
        const QByteArray before = QJsonDocument(readDocument(station("station2"))).toJson();

        environment.insert("ANSIBLE_LIBRARY", STATION_ANSIBLE_LIBRARY);
        environment.insert("ANSIBLE_NOCOLOR", "1");
        environment.insert("ANSIBLE_HOME", m_dir.path() + "/ansible");
        environment.insert("ANSIBLE_LOCAL_TEMP", m_dir.path() + "/ansible/tmp");
        environment.insert("ANSIBLE_RETRY_FILES_ENABLED", "0");
        environment.insert("ANSIBLE_CONFIG", m_dir.path() + "/none.cfg");
        const ToolRun run = runTool(m_program, QStringList { "-i", m_dir.path() + "/inventory", STATION_PLAYBOOK } + options, environment);
        QVERIFY2(run.code == 0, qPrintable(run.out + run.err));
        for (int i = 0; i < c_hosts.size(); ++i) {
            const QRegularExpression recap("\n" + c_hosts.at(i) + " +: ok=1 +changed=(\\d+) +unreachable=0 +failed=0");
            const QRegularExpressionMatch match = recap.match(run.out);
            QVERIFY2(match.hasMatch(), qPrintable(run.out));
            QCOMPARE(match.captured(1).toInt(), changed.at(i));
        }
        if (!out.isEmpty())
            QVERIFY2(QRegularExpression(out).match(run.out).hasMatch(), qPrintable(run.out));

        if (options.contains("--check")) {
            QCOMPARE(QJsonDocument(readDocument(station("station2"))).toJson(), before);
            return;
        }
        // Each station holds the plant's state, its own share directory and its own name.
        for (const QString& host : c_hosts) {
            const QJsonObject document = readDocument(station(host));
            QCOMPARE(document.value("general").toObject().value("sound_volume").toInt(), 55);
            QCOMPARE(document.value("general").toObject().value("workplace_name").toString(), QString("Station 12 - Gearbox housing"));
            QJsonObject share;
            for (const QJsonValue& folder : document.value("directories").toObject().value("folders").toArray()) {
                if (folder.toObject().value("aliasName") == QLatin1String("Cell_Share"))
                    share = folder.toObject();
            }
            QCOMPARE(share.value("path").toString(), "results/" + host);
            QCOMPARE(document.value("directories").toObject().value("foldersRoles").toObject().value("pdfResults"), share.value("id"));
            const QJsonArray relations = document.value("sequencer").toObject().value("sequenceIoRelations").toArray();
            QVERIFY(relations.contains(QJsonObject { { "binaryCode", 9 }, { "sequenceBaseName", "cover_plate_left" } }));
            QVERIFY(!QJsonDocument(relations).toJson().contains("\"binaryCode\": 5"));
        }
    }
};

QTEST_GUILESS_MAIN(TestAnsiblePlaybook)
#include "tst_ansibleplaybook.moc"
