#include <QDir>
#include <QImage>
#include <QProcess>
#include <QQuickItem>
#include <QRegularExpression>
#include <QScreen>
#include <QtTest>

#include "d_zu_configuration.h"
#include "directories.h"
#include "settingsfixture.h"

#include <unistd.h>

namespace {
// The texts of the visible items under `item` (any item with a "text" property).
QStringList visibleTexts(QQuickItem* item)
{
    if (!item->isVisible())
        return {};
    QStringList texts;
    const QVariant text = item->property("text");
    if (text.type() == QVariant::String)
        texts << text.toString();
    for (QQuickItem* child : item->childItems())
        texts << visibleTexts(child);
    return texts;
}
}

// Every page of the settings screens on the demo station: it draws something, and no text it
// shows is a raw translation id. One screenshot per page goes to <build>/screenshots.
class TestSettingsScreens : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void page_data();
    void page();
    void libraryErrorReachesBanner_data();
    void libraryErrorReachesBanner();
    void versionAndPreviewShown();
    void pickFile_data();
    void pickFile();
    void keyboardChoiceRewritesCompositorFile();
    // Last: the other tests read the English texts.
    void languageSwitch_data();
    void languageSwitch();

private:
    // Visible texts (of any item with a "text" property) under `item` that look like an id.
    void collectRawIds(QQuickItem* item, QStringList& found) const;

    SettingsFixture m_fixture;
    QSet<QString> m_dataTexts;
};

void TestSettingsScreens::initTestCase()
{
    QString error;
    QVERIFY2(m_fixture.start(error), qPrintable(error));
    QVERIFY(QTest::qWaitForWindowExposed(m_fixture.window()));
    QVERIFY(QDir().mkpath(QStringLiteral(STATION_SCREENSHOT_DIR)));
    // Folder aliases and the status output come from the station's document and may look like
    // ids ("Plant_Share", "OUT_3").
    m_dataTexts.insert(DZuConfiguration::getInstance()->sequenceStatusOutput());
    const auto& folders = DZuConfiguration::getInstance()->directories()->folders()->list();
    for (const auto& folder : folders)
        m_dataTexts.insert(folder->aliasName());
    QVERIFY(m_dataTexts.contains(QStringLiteral("Plant_Share")));
}

void TestSettingsScreens::page_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("expectedText");
    // A text each page must show, read from the demo station.
    QTest::newRow("general page shows the workplace") << 0 << "general" << "Station 12 - Gearbox housing";
    QTest::newRow("regional page shows the custom time server") << 1 << "regional" << "ntp.plant.local";
    // The network folder is chosen first: its server address shows in the editor.
    QTest::newRow("folders page edits the network folder") << 2 << "folders" << "127.0.0.1:1445";
    QTest::newRow("sequencer page lists a relation") << 3 << "sequencer" << "gearbox_housing_rear";
    QTest::newRow("templates page shows the company address") << 4 << "templates"
                                                               << "Assembly plant B, 14 rue des Forges, 69007 Lyon";
    QTest::newRow("sync page shows the reset") << 5 << "sync" << qtTrId("StationSettings_Sync_reset_button");
}

void TestSettingsScreens::page()
{
    QFETCH(int, index);
    QFETCH(QString, key);
    QFETCH(QString, expectedText);

    QQuickWindow* window = m_fixture.window();
    QCOMPARE(window->property("pageKeys").toStringList().value(index), key);
    window->setProperty("currentPage", index);
    if (key == QLatin1String("folders")) {
        QVERIFY(SettingsFixture::selectFolder(QStringLiteral("Plant_Share")));
    }
    auto* page = qobject_cast<QQuickItem*>(m_fixture.item(QStringLiteral("page_") + key));
    QVERIFY(page);
    QTRY_VERIFY(page->isVisible());

    QTRY_VERIFY_WITH_TIMEOUT(visibleTexts(page).contains(expectedText), 10000);

    QImage image;
    QVERIFY(m_fixture.saveScreenshot(key, &image));

    // Not blank: many colours, and a fair share of pixels apart from the background.
    QHash<QRgb, int> histogram;
    for (int y = 0; y < image.height(); y += 2) {
        for (int x = 0; x < image.width(); x += 2)
            ++histogram[image.pixel(x, y)];
    }
    int total = 0;
    int background = 0;
    for (auto it = histogram.cbegin(); it != histogram.cend(); ++it) {
        total += it.value();
        background = qMax(background, it.value());
    }
    QVERIFY2(histogram.size() >= 16, qPrintable(QStringLiteral("%1 colours only").arg(histogram.size())));
    QVERIFY2(total - background > total / 50, "the page is almost one colour");

    QStringList rawIds;
    collectRawIds(window->contentItem(), rawIds);
    QVERIFY2(rawIds.isEmpty(), qPrintable(QStringLiteral("raw ids shown: ") + rawIds.join(QStringLiteral(", "))));
}

void TestSettingsScreens::libraryErrorReachesBanner_data()
{
    QTest::addColumn<QString>("signal");
    QTest::addColumn<bool>("isError");
    QTest::newRow("unavailable folder alias") << "folderAliasUnavailable" << true;
    QTest::newRow("internal memory access error") << "internalMemoryAccessError" << true;
    QTest::newRow("permanent network folder failure") << "networkFolderConnectionError" << true;
    // A failure the share manager keeps retrying shows as a notice.
    QTest::newRow("passing network folder failure") << "networkFolderConnectionError" << false;
}

void TestSettingsScreens::libraryErrorReachesBanner()
{
    QFETCH(QString, signal);
    QFETCH(bool, isError);
    QObject* banner = m_fixture.item(QStringLiteral("messageBanner"));
    QObject* text = m_fixture.item(QStringLiteral("messageText"));
    QVERIFY(banner && text);
    banner->setProperty("visible", false);

    const QString message = QStringLiteral("report of ") + signal;
    Directories* directories = DZuConfiguration::getInstance()->directories();
    const bool emitted = signal == QLatin1String("networkFolderConnectionError")
        ? QMetaObject::invokeMethod(directories, "networkFolderConnectionError", Q_ARG(QString, QStringLiteral("Plant_Share")),
                                    Q_ARG(QString, message), Q_ARG(bool, isError))
        : QMetaObject::invokeMethod(directories, signal.toLatin1().constData(), Q_ARG(QString, message));
    QVERIFY(emitted);
    QVERIFY(banner->property("visible").toBool());
    QCOMPARE(text->property("text").toString(), message);
    QCOMPARE(banner->property("isError").toBool(), isError);
}

// The build's version, not a placeholder; the header says the screens run on stand-ins.
void TestSettingsScreens::versionAndPreviewShown()
{
    m_fixture.window()->setProperty("currentPage", 0);
    QTRY_VERIFY(m_fixture.isShown(QStringLiteral("versionLabel")));
    QCOMPARE(m_fixture.text(QStringLiteral("versionLabel")),
             qtTrId("StationSettings_General_version").arg(QStringLiteral(STATION_VERSION)));
    QVERIFY(m_fixture.isShown(QStringLiteral("previewNotice")));
}

void TestSettingsScreens::pickFile_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<QString>("picker");
    QTest::addColumn<QString>("source");        // "internal" or "external" (the removable medium)
    QTest::addColumn<QString>("name");          // put in <source>/exchange, then picked
    QTest::addColumn<QString>("target");        // where the station keeps it (relative to the internal storage)
    QTest::addColumn<bool>("added");            // false: a file of that name is there and stays
    QTest::newRow("template from a folder of the internal storage")
        << "addTemplateButton" << "templatePicker" << "internal" << "new_report_V2.0.0.lrxml" << "templates" << true;
    QTest::newRow("template from the removable medium")
        << "addTemplateButton" << "templatePicker" << "external" << "usb_report.lrxml" << "templates" << true;
    QTest::newRow("template of a name already there keeps the station's file")
        << "addTemplateButton" << "templatePicker" << "internal" << "summary.lrxml" << "templates" << false;
    QTest::newRow("logo, previewed, then copied to the media folder and chosen")
        << "chooseLogoButton" << "logoPicker" << "internal" << "new_logo.png" << "media" << true;
}

void TestSettingsScreens::pickFile()
{
    QFETCH(QString, button);
    QFETCH(QString, picker);
    QFETCH(QString, source);
    QFETCH(QString, name);
    QFETCH(QString, target);
    QFETCH(bool, added);
    const QString internal = m_fixture.directory() + QStringLiteral("/storage/internal");
    const QString kept = internal + QLatin1Char('/') + target + QLatin1Char('/') + name;
    // The demo station's removable medium is whatever is mounted at storage/usb.
    const QString root = source == QLatin1String("external") ? m_fixture.directory() + QStringLiteral("/storage/usb") : internal;
    Directories* directories = DZuConfiguration::getInstance()->directories();
    struct Unmount {
        QString path;
        ~Unmount() { if (!path.isEmpty()) QProcess::execute(QStringLiteral("umount"), { QStringLiteral("-l"), path }); }
    } unmount;
    if (source == QLatin1String("external")) {
        QVERIFY(QDir().mkpath(root));
        if (::geteuid() != 0 || QProcess::execute(QStringLiteral("mount"), { "-t", "tmpfs", "-o", "size=1m", "tmpfs", root }) != 0)
            QSKIP("mounting a medium needs root");
        unmount.path = root;
        QTRY_VERIFY_WITH_TIMEOUT(directories->removableStorageAvailable(), 15000);
    }
    const QString path = root + QStringLiteral("/exchange/") + name;
    QVERIFY(QDir().mkpath(root + QStringLiteral("/exchange")));
    if (name.endsWith(QLatin1String(".png"))) {
        QImage image(64, 32, QImage::Format_RGB32);
        image.fill(Qt::darkCyan);
        QVERIFY(image.save(path));
    } else {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("<report version=\"2\"/>\n") > 0);
    }
    const QByteArray keptBefore = SettingsFixture::digest(kept);
    QCOMPARE(keptBefore.isEmpty(), added);
    m_fixture.window()->setProperty("currentPage", 4);
    QObject* banner = m_fixture.item(QStringLiteral("messageBanner"));
    QVERIFY(banner);
    banner->setProperty("visible", false);

    QVERIFY(m_fixture.click(button));
    QObject* dialog = m_fixture.item(picker);
    QVERIFY(dialog);
    QTRY_VERIFY(dialog->property("opened").toBool());
    // Taps the list's row showing `text`.
    const auto tap = [&](const QString& text) {
        auto* list = qobject_cast<QQuickItem*>(m_fixture.item(picker + QStringLiteral("List")));
        auto* rows = list ? list->property("contentItem").value<QQuickItem*>() : nullptr;
        for (QQuickItem* row : rows ? rows->childItems() : QList<QQuickItem*>()) {
            if (row->isVisible() && row->property("text").toString().contains(text))
                return QMetaObject::invokeMethod(row, "clicked");
        }
        return false;
    };
    // Once each: QTRY_VERIFY evaluates its condition again after the wait.
    if (source == QLatin1String("external"))
        QVERIFY(m_fixture.click(picker + QStringLiteral("Removable")));
    bool entered = false;
    QTRY_VERIFY(entered || (entered = tap(QStringLiteral("exchange/"))));
    bool selected = false;
    QTRY_VERIFY(selected || (selected = tap(name)));
    QVERIFY(m_fixture.property(picker + QStringLiteral("Choose"), "enabled").toBool());
    if (dialog->property("preview").toBool()) {
        QTRY_COMPARE(m_fixture.property(picker + QStringLiteral("Preview"), "status").toInt(), 1); // Image.Ready
        QVERIFY(m_fixture.saveScreenshot(picker + QStringLiteral("_preview")));
    }
    QVERIFY(m_fixture.click(picker + QStringLiteral("Choose")));
    QTRY_VERIFY(!dialog->property("visible").toBool());

    if (added) {
        QCOMPARE(SettingsFixture::digest(kept), SettingsFixture::digest(path));
        if (target == QLatin1String("templates")) {
            QTRY_VERIFY(m_fixture.property(QStringLiteral("templateList"), "model").toStringList().contains(name));
        } else {
            QCOMPARE(DZuConfiguration::getInstance()->companyLogo(), name);
            QTRY_COMPARE(m_fixture.text(QStringLiteral("logoName")), name);
        }
        QVERIFY(!banner->property("visible").toBool());
    } else {
        QCOMPARE(SettingsFixture::digest(kept), keptBefore);
        QVERIFY(banner->property("visible").toBool() && banner->property("isError").toBool());
        QVERIFY2(m_fixture.text(QStringLiteral("messageText")).contains(name), qPrintable(m_fixture.text(QStringLiteral("messageText"))));
    }
}

// As with --apply-to-system: the compositor file is the station's own.
void TestSettingsScreens::keyboardChoiceRewritesCompositorFile()
{
    const QString path = m_fixture.directory() + QStringLiteral("/etc/weston.ini");
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    QVERIFY(file.write("[core]\nshell=kiosk-shell.so\n\n[keyboard]\nkeymap_layout=fr\n") > 0);
    file.close();
    DZuConfiguration::setCompositorConfigPath(path);
    auto restore = qScopeGuard([this] {
        DZuConfiguration::setCompositorConfigPath(m_fixture.directory() + QStringLiteral("/no-compositor/weston.ini"));
    });
    QQuickWindow* window = m_fixture.window();
    window->setProperty("currentPage", 1);
    window->setProperty("unsaved", false);
    QObject* box = m_fixture.item(QStringLiteral("keyboardBox"));
    QVERIFY(box);

    QVERIFY(QMetaObject::invokeMethod(box, "chosen", Q_ARG(QString, QStringLiteral("Deutsch"))));

    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("[core]\nshell=kiosk-shell.so\n\n[keyboard]\nkeymap_layout=de\n"));
    QCOMPARE(box->property("currentText").toString(), QStringLiteral("Deutsch"));
    QVERIFY(window->property("unsaved").toBool());
}

void TestSettingsScreens::languageSwitch_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("pageTitle");
    // Chosen on the regional page, where the language box is; English last puts the screens back.
    QTest::newRow("French") << QString::fromUtf8("Fran\xc3\xa7" "ais") << QString::fromUtf8("R\xc3\xa9glages r\xc3\xa9gionaux");
    QTest::newRow("German") << "Deutsch" << "Regionaleinstellungen";
    QTest::newRow("Italian") << "Italiano" << "Impostazioni regionali";
    QTest::newRow("back to English") << "English" << "Regional settings";
}

void TestSettingsScreens::languageSwitch()
{
    QFETCH(QString, language);
    QFETCH(QString, pageTitle);
    QQuickWindow* window = m_fixture.window();
    window->setProperty("currentPage", 1);
    auto* page = qobject_cast<QQuickItem*>(m_fixture.item(QStringLiteral("page_regional")));
    QObject* box = m_fixture.item(QStringLiteral("languageBox"));
    QVERIFY(page && box);
    QTRY_VERIFY(page->isVisible());
    QVERIFY(box->property("model").toStringList().contains(language));
    window->setProperty("unsaved", false);

    QVERIFY(QMetaObject::invokeMethod(box, "chosen", Q_ARG(QString, language)));

    // The page shows its title in the new language at once, and stays the page shown.
    const QStringList texts = visibleTexts(page);
    QVERIFY2(texts.contains(pageTitle), qPrintable(texts.join(QStringLiteral(" | "))));
    QCOMPARE(window->property("currentPage").toInt(), 1);
    QVERIFY(page->isVisible());
    QCOMPARE(box->property("currentText").toString(), language);
    QVERIFY(window->property("unsaved").toBool());

    // Every navigation entry, this page's among them, is in the new language and fits.
    auto* list = qobject_cast<QQuickItem*>(m_fixture.item(QStringLiteral("pageList")));
    QVERIFY(list);
    auto* entries = list->property("contentItem").value<QQuickItem*>();
    QVERIFY(entries);
    // The navigation is laid out again on the next frame.
    QStringList titles;
    QString tooNarrow;
    const auto entriesFit = [&]() {
        titles.clear();
        tooNarrow.clear();
        for (QQuickItem* entry : entries->childItems()) {
            if (!entry->property("highlighted").isValid())
                continue;
            titles << entry->property("text").toString();
            const qreal needed = entry->property("implicitContentWidth").toReal()
                + entry->property("leftPadding").toReal() + entry->property("rightPadding").toReal();
            if (needed > entry->width() + 0.5)
                tooNarrow += QStringLiteral("'%1' needs %2 px, has %3; ").arg(titles.constLast()).arg(needed).arg(entry->width());
        }
        return tooNarrow.isEmpty();
    };
    QTRY_VERIFY2(entriesFit(), qPrintable(tooNarrow));
    QVERIFY2(titles.contains(pageTitle), qPrintable(titles.join(QStringLiteral(" | "))));

    QStringList rawIds;
    collectRawIds(window->contentItem(), rawIds);
    QVERIFY2(rawIds.isEmpty(), qPrintable(QStringLiteral("raw ids shown: ") + rawIds.join(QStringLiteral(", "))));
    QVERIFY(m_fixture.saveScreenshot(QStringLiteral("language-") + QString::fromLatin1(QTest::currentDataTag()).section(QLatin1Char(' '), -1)));
}

void TestSettingsScreens::collectRawIds(QQuickItem* item, QStringList& found) const
{
    static const QRegularExpression id(QStringLiteral("^[A-Z][A-Za-z]+_[A-Za-z0-9_]+$"));
    if (!item->isVisible())
        return;
    const QVariant text = item->property("text");
    if (text.type() == QVariant::String) {
        const QString value = text.toString();
        if (id.match(value).hasMatch() && !m_dataTexts.contains(value))
            found << value;
    }
    for (QQuickItem* child : item->childItems())
        collectRawIds(child, found);
}

QTEST_MAIN(TestSettingsScreens)
#include "tst_settingsscreens.moc"
