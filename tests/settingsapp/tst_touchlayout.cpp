#include <QDir>
#include <QImage>
#include <QQuickItem>
#include <QtTest>

#include "d_zu_configuration.h"
#include "settingsfixture.h"

// Every page of the settings screens at the sizes of a station's panel: walking the item tree,
// no visible control is smaller than a finger's target or reaches past the window's right edge
// (or past the right edge of a view that clips it), and the header's texts read on its colour.
// One screenshot per page and size goes to <build>/screenshots (touch_<page>_<width>x<height>).
class TestTouchLayout : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void page_data();
    void page();
    void headerContrast_data();
    void headerContrast();
    void keyboardLeavesFieldInSight_data();
    void keyboardLeavesFieldInSight();

private:
    void showPage(const QString& key, const QSize& size);

    SettingsFixture m_fixture;
};

namespace {

const int C_minimumTarget = 44;

struct Size
{
    const char* name;
    int width;
    int height;
};
const Size C_sizes[] = { { "1024x600", 1024, 600 }, { "1280x800", 1280, 800 }, { "1920x1080", 1920, 1080 } };
const char* const C_pages[] = { "general", "regional", "folders", "sequencer", "templates", "sync" };
// Dialogs, opened over a page by the button that opens them: key, page, button, dialog.
struct Dialog
{
    const char* key;
    const char* page;
    const char* button;
    const char* dialog;
};
const Dialog C_dialogs[] = {
    { "history dialog", "general", "historyButton", "historyDialog" },
    { "folder delete question", "folders", "deleteFolderButton", "deleteFolderConfirm" },
    { "sync reset question", "sync", "resetSyncButton", "resetSyncConfirm" },
    { "template picker", "templates", "addTemplateButton", "templatePicker" },
    { "logo picker", "templates", "chooseLogoButton", "logoPicker" },
};

// What an operator touches: buttons (and check boxes, delegates...), fields, boxes, sliders, and
// scroll bars that can be dragged.
bool isInteractive(const QQuickItem* item)
{
    if (item->inherits("QQuickScrollBar"))
        return item->property("interactive").toBool();
    for (const char* type : { "QQuickAbstractButton", "QQuickComboBox", "QQuickSpinBox", "QQuickTextField",
                              "QQuickTextArea", "QQuickSlider", "QQuickRangeSlider", "QQuickDial", "QQuickTumbler" }) {
        if (item->inherits(type))
            return true;
    }
    return false;
}

QString describe(const QQuickItem* item)
{
    QString text = item->property("text").toString();
    if (text.isEmpty())
        text = item->property("placeholderText").toString();
    return QStringLiteral("%1 \"%2\" (%3)")
        .arg(QString::fromLatin1(item->metaObject()->className()), item->objectName(), text.left(40));
}

// The nearest control holding `item`, for the messages.
QString owner(const QQuickItem* item)
{
    for (const QQuickItem* parent = item->parentItem(); parent; parent = parent->parentItem()) {
        if (parent->inherits("QQuickControl"))
            return describe(parent);
    }
    return QStringLiteral("the window");
}

// WCAG relative luminance and contrast ratio.
double luminance(const QColor& color)
{
    auto channel = [](double value) {
        return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * channel(color.redF()) + 0.7152 * channel(color.greenF()) + 0.0722 * channel(color.blueF());
}

double contrast(const QColor& a, const QColor& b)
{
    const double la = luminance(a);
    const double lb = luminance(b);
    return (qMax(la, lb) + 0.05) / (qMin(la, lb) + 0.05);
}

// `color` drawn with `opacity` over `background`.
QColor blend(const QColor& color, const QColor& background, double opacity)
{
    const double alpha = opacity * color.alphaF();
    return QColor::fromRgbF(color.redF() * alpha + background.redF() * (1 - alpha),
                            color.greenF() * alpha + background.greenF() * (1 - alpha),
                            color.blueF() * alpha + background.blueF() * (1 - alpha));
}

} // namespace

void TestTouchLayout::initTestCase()
{
    QString error;
    QVERIFY2(m_fixture.start(error), qPrintable(error));
    QVERIFY(QTest::qWaitForWindowExposed(m_fixture.window()));
    QVERIFY(QDir().mkpath(QStringLiteral(STATION_SCREENSHOT_DIR)));
}

void TestTouchLayout::showPage(const QString& key, const QSize& size)
{
    QQuickWindow* window = m_fixture.window();
    window->resize(size);
    QVERIFY(m_fixture.showPage(key));
    if (key == QLatin1String("folders")) {
        // The network folder shows every field of the editor.
        QVERIFY(SettingsFixture::selectFolder(QStringLiteral("Plant_Share")));
        QTRY_VERIFY(m_fixture.isShown(QStringLiteral("folderAddressField")));
    }
    QTRY_COMPARE(window->size(), size);
    QTRY_COMPARE(qRound(window->contentItem()->width()), size.width());
    // Layouts settle at the next polish.
    QVERIFY(m_fixture.saveScreenshot(QStringLiteral("touch_%1_%2x%3").arg(key).arg(size.width()).arg(size.height())));
}

void TestTouchLayout::page_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QSize>("size");
    // Empty for a page alone.
    QTest::addColumn<QString>("button");
    QTest::addColumn<QString>("dialog");
    for (const Size& size : C_sizes) {
        for (const char* key : C_pages)
            QTest::addRow("%s at %s", key, size.name) << QString::fromLatin1(key) << QSize(size.width, size.height)
                                                      << QString() << QString();
        for (const Dialog& dialog : C_dialogs) {
            QTest::addRow("%s at %s", dialog.key, size.name)
                << QString::fromLatin1(dialog.page) << QSize(size.width, size.height)
                << QString::fromLatin1(dialog.button) << QString::fromLatin1(dialog.dialog);
        }
    }
}

void TestTouchLayout::page()
{
    QFETCH(QString, key);
    QFETCH(QSize, size);
    QFETCH(QString, button);
    QFETCH(QString, dialog);
    showPage(key, size);
    if (QTest::currentTestFailed())
        return;
    QObject* popup = nullptr;
    if (!dialog.isEmpty()) {
        popup = m_fixture.item(dialog);
        QVERIFY(popup);
        QVERIFY(m_fixture.click(button));
        QTRY_VERIFY(popup->property("opened").toBool());
        QVERIFY(m_fixture.saveScreenshot(QStringLiteral("touch_%1_%2x%3").arg(dialog).arg(size.width()).arg(size.height())));
    }
    // Closed whatever the outcome, for the next row.
    auto closePopup = qScopeGuard([popup] {
        if (popup)
            popup->setProperty("visible", false);
    });

    QQuickWindow* window = m_fixture.window();
    QStringList small;
    QStringList outside;
    int controls = 0;
    // `rightLimit`: the right edge (scene) of the window or of the nearest view that clips.
    std::function<void(QQuickItem*, qreal)> walk = [&](QQuickItem* item, qreal rightLimit) {
        if (!item->isVisible() || item->opacity() <= 0)
            return;
        const QRectF box = item->mapRectToScene(QRectF(0, 0, item->width(), item->height()));
        // What the operator reads or touches; a style's shadows may spread past a control.
        const bool content = item->inherits("QQuickControl") || item->inherits("QQuickText")
            || item->inherits("QQuickTextInput") || item->inherits("QQuickTextEdit") || item->inherits("QQuickImage");
        if (content && item->width() > 0 && box.right() > rightLimit + 0.5)
            outside << QStringLiteral("%1 in %2 ends at %3, beyond %4").arg(describe(item), owner(item)).arg(box.right()).arg(rightLimit);
        if (isInteractive(item)) {
            ++controls;
            if (item->width() < C_minimumTarget || item->height() < C_minimumTarget)
                small << QStringLiteral("%1 is %2x%3").arg(describe(item)).arg(item->width()).arg(item->height());
            // A spin box's arrows are targets of their own.
            if (item->inherits("QQuickSpinBox")) {
                for (const char* name : { "up", "down" }) {
                    QObject* button = item->property(name).value<QObject*>();
                    auto* indicator = button ? button->property("indicator").value<QQuickItem*>() : nullptr;
                    if (!indicator || indicator->width() < C_minimumTarget || indicator->height() < C_minimumTarget) {
                        small << QStringLiteral("%1's %2 arrow is %3x%4").arg(describe(item), QLatin1String(name))
                                     .arg(indicator ? indicator->width() : 0).arg(indicator ? indicator->height() : 0);
                    }
                }
            }
        }
        const qreal limit = item->clip() ? qMin(rightLimit, box.right()) : rightLimit;
        for (QQuickItem* child : item->childItems())
            walk(child, limit);
    };
    // The window's root item holds the header, the pages and the overlay.
    walk(window->contentItem(), size.width());

    // Every page name shows whole in the navigation.
    auto* navigation = qobject_cast<QQuickItem*>(m_fixture.item(QStringLiteral("pageList")));
    QVERIFY(navigation);
    QStringList cut;
    int names = 0;
    std::function<void(QQuickItem*)> names_walk = [&](QQuickItem* item) {
        if (item->inherits("QQuickText") && item->isVisible()) {
            ++names;
            if (item->property("truncated").toBool() || item->property("implicitWidth").toReal() > item->width() + 0.5)
                cut << item->property("text").toString();
        }
        for (QQuickItem* child : item->childItems())
            names_walk(child);
    };
    names_walk(navigation);
    QCOMPARE(names, window->property("pageKeys").toStringList().size());
    QVERIFY2(cut.isEmpty(), qPrintable(QStringLiteral("cut in the navigation: ") + cut.join(QStringLiteral(", "))));

    // The page and the header hold controls: an empty walk would prove nothing.
    if (popup) {
        // The dialog's own buttons were among them.
        QVERIFY(m_fixture.isShown(dialog == QLatin1String("historyDialog") ? QStringLiteral("closeHistoryButton")
                                                                           : dialog + QStringLiteral("Cancel")));
    }
    QVERIFY2(controls >= 8, qPrintable(QStringLiteral("only %1 controls found").arg(controls)));
    QVERIFY2(small.isEmpty(), qPrintable(QStringLiteral("below %1 px: ").arg(C_minimumTarget) + small.join(QStringLiteral("; "))));
    QVERIFY2(outside.isEmpty(), qPrintable(QStringLiteral("past the right edge: ") + outside.join(QStringLiteral("; "))));
    if (popup) {
        popup->setProperty("visible", false);
        QTRY_VERIFY(!popup->property("visible").toBool());
    }
}

void TestTouchLayout::headerContrast_data()
{
    QTest::addColumn<QSize>("size");
    for (const Size& size : C_sizes)
        QTest::addRow("%s", size.name) << QSize(size.width, size.height);
}

void TestTouchLayout::headerContrast()
{
    QFETCH(QSize, size);
    // Unsaved changes show their label too.
    m_fixture.window()->setProperty("unsaved", true);
    showPage(QStringLiteral("general"), size);
    if (QTest::currentTestFailed())
        return;
    // Nothing dims the header.
    const auto popups = m_fixture.window()->findChildren<QObject*>();
    int dialogs = 0;
    for (QObject* object : popups) {
        if (object->inherits("QQuickPopup")) {
            ++dialogs;
            QVERIFY2(!object->property("visible").toBool(), qPrintable(object->objectName() + QStringLiteral(" is open")));
        }
    }
    QVERIFY2(dialogs >= 5, qPrintable(QStringLiteral("%1 dialogs found").arg(dialogs)));
    auto* background = qobject_cast<QQuickItem*>(m_fixture.item(QStringLiteral("headerBackground")));
    QVERIFY(background);
    const QColor backgroundColor = background->property("color").value<QColor>();
    QVERIFY(backgroundColor.isValid());

    // Texts drawn straight on the header (not on a button's own background).
    auto* header = qobject_cast<QQuickItem*>(m_fixture.item(QStringLiteral("headerBar")));
    QVERIFY(header);
    QStringList faint;
    int texts = 0;
    std::function<void(QQuickItem*, double)> walk = [&](QQuickItem* item, double opacity) {
        if (!item->isVisible() || item->inherits("QQuickAbstractButton"))
            return;
        opacity *= item->opacity();
        if (item->inherits("QQuickText") && !item->property("text").toString().isEmpty()) {
            ++texts;
            const QColor drawn = blend(item->property("color").value<QColor>(), backgroundColor, opacity);
            const double ratio = contrast(drawn, backgroundColor);
            if (ratio < 4.5)
                faint << QStringLiteral("\"%1\" %2 on %3: %4:1").arg(item->property("text").toString().left(40),
                                                                      drawn.name(), backgroundColor.name()).arg(ratio, 0, 'f', 2);
        }
        for (QQuickItem* child : item->childItems())
            walk(child, opacity);
    };
    walk(header, 1.0);
    m_fixture.window()->setProperty("unsaved", false);
    // Workplace, line and directory, clock, unsaved changes.
    QVERIFY2(texts >= 4, qPrintable(QStringLiteral("%1 texts in the header").arg(texts)));
    QVERIFY2(faint.isEmpty(), qPrintable(QStringLiteral("below 4.5:1: ") + faint.join(QStringLiteral("; "))));
}

void TestTouchLayout::keyboardLeavesFieldInSight_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("field");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QString>("expectedLocale");
    // The lowest fields of their pages; the demo station's keyboard map is French.
    for (const Size& size : C_sizes) {
        QTest::addRow("folder password at %s", size.name) << "folders" << "folderPasswordField"
                                                          << QSize(size.width, size.height) << "fr_FR";
        QTest::addRow("production line at %s", size.name) << "general" << "productionLineField"
                                                          << QSize(size.width, size.height) << "fr_FR";
    }
}

void TestTouchLayout::keyboardLeavesFieldInSight()
{
    QFETCH(QString, key);
    QFETCH(QString, field);
    QFETCH(QSize, size);
    QFETCH(QString, expectedLocale);
    QCOMPARE(qgetenv("QT_IM_MODULE"), QByteArray("qtvirtualkeyboard"));
    showPage(key, size);
    if (QTest::currentTestFailed())
        return;
    auto* input = qobject_cast<QQuickItem*>(m_fixture.item(field));
    auto* panel = qobject_cast<QQuickItem*>(m_fixture.item(QStringLiteral("inputPanel")));
    QVERIFY(input && panel);
    input->forceActiveFocus();
    QTRY_VERIFY(panel->property("active").toBool());
    QTRY_VERIFY(panel->height() > 100);
    // Settled once the panel reached its place and the page scrolled.
    const qreal panelTop = size.height() - panel->height();
    QTRY_COMPARE(panel->mapToScene(QPointF(0, 0)).y(), panelTop);
    QTRY_VERIFY2(input->mapToScene(QPointF(0, input->height())).y() <= panelTop,
                 qPrintable(QStringLiteral("the field ends at %1, the keyboard starts at %2")
                                .arg(input->mapToScene(QPointF(0, input->height())).y()).arg(panelTop)));
    QVERIFY(input->mapToScene(QPointF(0, 0)).y() >= 0);
    QVERIFY(input->isVisible());
    QVERIFY(m_fixture.saveScreenshot(QStringLiteral("keyboard_%1_%2x%3").arg(key).arg(size.width()).arg(size.height())));
    // The station's keyboard map chose the keyboard's language.
    QCOMPARE(m_fixture.window()->property("keyboardLocaleInUse").toString(), expectedLocale);
    input->setFocus(false);
    m_fixture.window()->contentItem()->forceActiveFocus();
    QTRY_VERIFY(!panel->property("active").toBool());
}

QTEST_MAIN(TestTouchLayout)
#include "tst_touchlayout.moc"
