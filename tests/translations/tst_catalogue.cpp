#include <QCoreApplication>
#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <QTranslator>
#include <QtTest>

// Every translation id the code uses must have an English text in the catalogue, or the
// person at the station reads a raw id.
class TestCatalogue : public QObject
{
    Q_OBJECT
private slots:
    void everyIdHasEnglishText();
};

void TestCatalogue::everyIdHasEnglishText()
{
    QTranslator catalogue;
    QVERIFY2(catalogue.load(QStringLiteral("station_en"), QStringLiteral(STATION_CATALOGUE_DIR)),
             "the English catalogue was not built");
    QCoreApplication::installTranslator(&catalogue);

    static const QRegularExpression call(QStringLiteral("qsTrId\\(\\s*\"([^\"]+)\"|qtTrId\\(\\s*\"([^\"]+)\""));
    QSet<QString> ids;
    for (const char* folder : { "lib_configuration", "platform", "apps" }) {
        QDirIterator it(QStringLiteral(STATION_SOURCE_DIR "/") + QLatin1String(folder),
                        { "*.cpp", "*.h", "*.qml" }, QDir::Files, QDirIterator::Subdirectories);
        while (it.hasNext()) {
            QFile file(it.next());
            QVERIFY(file.open(QIODevice::ReadOnly));
            auto matches = call.globalMatch(QString::fromUtf8(file.readAll()));
            while (matches.hasNext()) {
                const auto match = matches.next();
                ids.insert(match.captured(1).isEmpty() ? match.captured(2) : match.captured(1));
            }
        }
    }
    QVERIFY2(ids.size() >= 30, "the scan found too few ids; is the source tree where it should be?");

    QStringList missing;
    for (const QString& id : qAsConst(ids)) {
        if (qtTrId(id.toUtf8().constData()) == id)
            missing << id;
    }
    missing.sort();
    QVERIFY2(missing.isEmpty(), qPrintable(QStringLiteral("ids without English text: ") + missing.join(", ")));
}

QTEST_GUILESS_MAIN(TestCatalogue)
#include "tst_catalogue.moc"
