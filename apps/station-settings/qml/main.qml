import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Controls.Material 2.15
import QtQuick.Layouts 1.15

ApplicationWindow {
    id: window
    objectName: "settingsWindow"
    // A station's panel: 1024x600 is the smallest the screens are laid out for.
    width: 1280
    height: 800
    minimumWidth: 1024
    minimumHeight: 600
    visible: true
    // Text and fields sized for a finger on the panel.
    font.pixelSize: 16
    // Set once the operator agreed to close with unsaved changes.
    property bool closeConfirmed: false

    onClosing: {
        if (window.unsaved && !window.closeConfirmed) {
            close.accepted = false
            closeConfirm.open()
        }
    }

    // Reading the station again drops unsaved edits: asks first when there are some.
    function requestReload() {
        if (window.unsaved)
            reloadConfirm.open()
        else
            station.reload()
    }
    //% "Station settings"
    title: qsTrId("StationSettings_Window_title") + " - " + zuConfig.workplaceName

    // Index of the page shown; the tests switch pages through it.
    property alias currentPage: pageList.currentIndex
    readonly property var pageKeys: ["general", "regional", "folders", "sequencer", "templates", "sync"]
    // Page names, in the order of pageKeys.
    function pageTitle(index) {
        return [
            //% "General"
            qsTrId("StationSettings_Page_general"),
            //% "Regional settings"
            qsTrId("StationSettings_Page_regional"),
            //% "Folders"
            qsTrId("StationSettings_Page_folders"),
            //% "Sequencer"
            qsTrId("StationSettings_Page_sequencer"),
            //% "Templates and logo"
            qsTrId("StationSettings_Page_templates"),
            //% "Synchronisation"
            qsTrId("StationSettings_Page_sync")
        ][index]
    }

    // Shows a message the library or an operation reported, until dismissed.
    function showMessage(text, isError) {
        banner.text = text
        banner.isError = isError
        banner.visible = text.length > 0
    }

    Connections {
        target: directories
        function onFolderAliasUnavailable(message) { window.showMessage(message, true) }
        function onInternalMemoryAccessError(message) { window.showMessage(message, true) }
        function onNetworkFolderConnectionError(aliasName, errorMessage, isPermanent) {
            window.showMessage(errorMessage, isPermanent)
        }
    }
    // Changes made since the last save or reload.
    property bool unsaved: false
    Connections {
        target: zuConfig
        function onSigConfigurationChanged() { window.unsaved = true }
        function onSigRegionChanged() { window.unsaved = true }
        function onSigSequenceRelationChanged() { window.unsaved = true }
    }
    Connections {
        target: station
        function onSaved(success, error) {
            window.unsaved = !success
            //% "The settings were saved."
            window.showMessage(success ? qsTrId("StationSettings_Saved")
                                         //% "The settings could not be saved: %1"
                                       : qsTrId("StationSettings_Save_failed").arg(error), !success)
        }
        function onSigSaveConflict(message) { conflictDialog.open() }
        function onReloaded() {
            window.unsaved = false
            //% "The settings were read again from the station."
            window.showMessage(qsTrId("StationSettings_Reloaded"), false)
        }
        function onSigRestored(success, detail) {
            if (success)
                window.unsaved = false
            //% "The version of %1 was restored and read again."
            window.showMessage(success ? qsTrId("StationSettings_History_restored").arg(detail)
                                         //% "The version could not be restored: %1"
                                       : qsTrId("StationSettings_History_restore_failed").arg(detail), !success)
        }
        function onSigStartedFromDefaults(success, detail) {
            // Read again either way; an unusable document has nothing to save.
            window.unsaved = false
            //% "The damaged document was moved to %1. The screens show default settings; Save writes a new document."
            window.showMessage(success ? qsTrId("StationSettings_Document_moved_aside").arg(detail)
                                         //% "The damaged document could not be moved aside: %1"
                                       : qsTrId("StationSettings_Document_move_failed").arg(detail), !success)
        }
    }

    // Asks before a kept version replaces the document.
    function askRestore(number, timeText) {
        restoreConfirm.number = number
        //% "Restore the version of %1? It is written over the settings document and read again; the document it replaces is kept (as a version, or beside it when damaged). Changes not saved here are lost."
        restoreConfirm.text = qsTrId("StationSettings_History_confirm_restore").arg(timeText)
        restoreConfirm.open()
    }

    HistoryDialog {
        id: historyDialog
        onRestoreRequested: window.askRestore(number, timeText)
    }
    ConfirmDialog {
        id: restoreConfirm
        objectName: "restoreConfirm"
        property int number: -1
        //% "Restore a version"
        title: qsTrId("StationSettings_History_restore_title")
        //% "Restore"
        acceptText: qsTrId("StationSettings_History_restore_accept")
        onAccepted: {
            historyDialog.close()
            station.restoreVersion(number)
        }
    }
    ConfirmDialog {
        id: reloadConfirm
        objectName: "reloadConfirm"
        //% "Reload"
        title: qsTrId("StationSettings_Reload")
        //% "Read the settings again from the station? The changes not saved here are lost."
        text: qsTrId("StationSettings_Confirm_reload")
        //% "Reload and lose changes"
        acceptText: qsTrId("StationSettings_Confirm_reload_accept")
        onAccepted: station.reload()
    }
    ConfirmDialog {
        id: closeConfirm
        objectName: "closeConfirm"
        //% "Unsaved changes"
        title: qsTrId("StationSettings_Unsaved_changes")
        //% "Close without saving? The changes made here are lost."
        text: qsTrId("StationSettings_Confirm_close")
        //% "Close without saving"
        acceptText: qsTrId("StationSettings_Confirm_close_accept")
        onAccepted: {
            window.closeConfirmed = true
            window.close()
        }
    }
    ConfirmDialog {
        id: defaultsConfirm
        objectName: "defaultsConfirm"
        //% "Start from defaults"
        title: qsTrId("StationSettings_Document_defaults_title")
        //% "Move the damaged document aside and show the default settings? Nothing is written until you save."
        text: qsTrId("StationSettings_Document_confirm_defaults")
        //% "Move aside"
        acceptText: qsTrId("StationSettings_Document_move_aside")
        onAccepted: station.startFromDefaults()
    }
    Dialog {
        id: conflictDialog
        objectName: "conflictDialog"
        modal: true
        anchors.centerIn: Overlay.overlay
        width: Math.min(parent.width - 80, 600)
        padding: 16
        // Framed without the style's shadow layer, which a software-rendered panel cannot show.
        background: Rectangle {
            color: "#ffffff"
            border.color: "#78909c"
            radius: 4
        }
        //% "Changed by another program"
        title: qsTrId("StationSettings_Conflict_title")
        Label {
            width: conflictDialog.availableWidth
            wrapMode: Text.Wrap
            //% "Another program changed the settings document since this program read it; nothing was saved. Reload its settings (the changes made here are lost), or overwrite them with the settings shown here?"
            text: qsTrId("StationSettings_Conflict_text")
        }
        footer: RowLayout {
            spacing: 8
            Item { Layout.fillWidth: true }
            TouchButton {
                objectName: "conflictCancelButton"
                Layout.bottomMargin: 8
                text: qsTrId("StationSettings_Cancel")
                onClicked: conflictDialog.close()
            }
            TouchButton {
                objectName: "conflictReloadButton"
                Layout.bottomMargin: 8
                //% "Reload"
                text: qsTrId("StationSettings_Reload")
                onClicked: { conflictDialog.close(); station.reload() }
            }
            TouchButton {
                objectName: "conflictOverwriteButton"
                Layout.bottomMargin: 8
                Layout.rightMargin: 8
                //% "Overwrite"
                text: qsTrId("StationSettings_Conflict_overwrite")
                onClicked: { conflictDialog.close(); station.overwrite() }
            }
        }
    }

    header: ToolBar {
        id: headerBar
        objectName: "headerBar"
        // Light text on a dark header, whatever the style's primary colour.
        readonly property color backgroundColor: "#263238"
        // Room for the workplace, the line and directory, and the preview notice.
        implicitHeight: 62
        Material.theme: Material.Dark
        Material.background: backgroundColor
        Material.foreground: "#ffffff"
        Material.accent: Material.LightBlue
        palette.window: backgroundColor
        palette.windowText: "#ffffff"
        palette.buttonText: "#ffffff"
        background: Rectangle {
            objectName: "headerBackground"
            color: headerBar.backgroundColor
        }
        RowLayout {
            anchors.fill: parent
            anchors.leftMargin: 12
            anchors.rightMargin: 8
            spacing: 12
            ColumnLayout {
                spacing: 0
                Layout.fillWidth: true
                Label {
                    text: zuConfig.workplaceName
                    color: "#ffffff"
                    Layout.fillWidth: true
                    font.bold: true
                    font.pixelSize: 16
                    elide: Text.ElideRight
                }
                Label {
                    //% "Line: %1 - station directory: %2"
                    text: qsTrId("StationSettings_Header_line_and_directory").arg(zuConfig.prodLineName).arg(station.directory)
                    color: "#cfd8dc"
                    font.pixelSize: 11
                    elide: Text.ElideMiddle
                    Layout.fillWidth: true
                }
                Label {
                    objectName: "previewNotice"
                    visible: station.systemPreview
                    //% "preview: system settings are not applied to this computer"
                    text: qsTrId("StationSettings_Header_preview")
                    color: "#ffcc80"
                    font.pixelSize: 11
                    elide: Text.ElideRight
                    Layout.fillWidth: true
                }
            }
            Label {
                text: dateTime.currentDate + "  " + dateTime.currentTime
                color: "#cfd8dc"
            }
            Label {
                objectName: "unsavedLabel"
                visible: window.unsaved
                //% "Unsaved changes"
                text: qsTrId("StationSettings_Unsaved_changes")
                color: "#ffcc80"
                font.bold: true
            }
            Button {
                objectName: "historyButton"
                // Text buttons on the dark header.
                flat: true
                //% "History"
                text: qsTrId("StationSettings_History")
                onClicked: historyDialog.open()
            }
            Button {
                objectName: "reloadButton"
                // Text buttons on the dark header.
                flat: true
                //% "Reload"
                text: qsTrId("StationSettings_Reload")
                onClicked: window.requestReload()
            }
            Button {
                objectName: "saveButton"
                // Text buttons on the dark header.
                flat: true
                //% "Save"
                text: qsTrId("StationSettings_Save")
                highlighted: true
                // Never over a document that could not be read.
                enabled: zuConfig.documentUsable
                onClicked: station.save()
            }
        }
    }

    // The on-screen keyboard's language in use (empty without the keyboard).
    readonly property string keyboardLocaleInUse: keyboard.item ? keyboard.item.localeInUse : ""
    readonly property bool keyboardShown: keyboard.item ? keyboard.item.active : false
    readonly property real keyboardHeight: keyboardShown ? keyboard.item.height : 0

    // Scrolls the view holding the field being edited so that the keyboard leaves it in sight.
    function revealFocusedField() {
        var field = window.activeFocusItem
        if (!field || !window.keyboardShown)
            return
        for (var view = field.parent; view; view = view.parent) {
            if (view.flickableDirection !== undefined && view.contentItem !== undefined) {
                var top = field.mapToItem(view.contentItem, 0, 0).y
                var bottom = top + field.height
                if (bottom > view.contentY + view.height - 8)
                    view.contentY = Math.min(bottom - view.height + 8, Math.max(0, view.contentHeight - view.height))
                else if (top < view.contentY + 8)
                    view.contentY = Math.max(0, top - 8)
                return
            }
        }
    }
    onActiveFocusItemChanged: Qt.callLater(revealFocusedField)

    RowLayout {
        id: screens
        anchors.fill: parent
        // The keyboard takes the bottom of the window: the pages get the rest.
        anchors.bottomMargin: window.keyboardHeight
        onHeightChanged: Qt.callLater(window.revealFocusedField)
        spacing: 0

        Pane {
            Layout.fillHeight: true
            // As wide as its longest entry (delegate padding and the border included).
            Layout.preferredWidth: Math.max(160, pageNames.implicitWidth + 2 * 16 + 2)
            padding: 0
            // The page names laid out unseen, for their widest.
            Column {
                id: pageNames
                opacity: 0
                enabled: false
                Repeater {
                    model: pageList.model
                    Label { text: window.pageTitle(index) }
                }
            }
            background: Rectangle {
                color: "#eef1f4"
                Rectangle { anchors.right: parent.right; width: 1; height: parent.height; color: "#c8ccd0" }
            }
            ListView {
                id: pageList
                objectName: "pageList"
                enabled: zuConfig.documentUsable
                anchors.fill: parent
                anchors.topMargin: 8
                currentIndex: 0
                // A count, not the titles: retranslating then keeps the view and its current page.
                model: window.pageKeys.length
                delegate: ItemDelegate {
                    width: ListView.view.width
                    height: 52
                    text: window.pageTitle(index)
                    highlighted: ListView.isCurrentItem
                    onClicked: pageList.currentIndex = index
                    background: Rectangle {
                        color: parent.highlighted ? "#c5dcf2" : parent.hovered ? "#dfe4ea" : "transparent"
                    }
                }
            }
        }

        ColumnLayout {
            Layout.fillWidth: true
            Layout.fillHeight: true
            spacing: 0

            Rectangle {
                id: banner
                objectName: "messageBanner"
                property alias text: bannerText.text
                property bool isError: false
                visible: false
                Layout.fillWidth: true
                Layout.preferredHeight: bannerRow.implicitHeight + 12
                color: isError ? "#fde2e1" : "#e3f1e4"
                border.color: isError ? "#d9534f" : "#5cb85c"
                RowLayout {
                    id: bannerRow
                    anchors.fill: parent
                    anchors.leftMargin: 12
                    anchors.rightMargin: 6
                    Label {
                        id: bannerText
                        objectName: "messageText"
                        Layout.fillWidth: true
                        wrapMode: Text.Wrap
                        color: banner.isError ? "#8a1f1b" : "#1d5e20"
                    }
                    ToolButton {
                        objectName: "bannerCloseButton"
                        implicitWidth: 48
                        implicitHeight: 48
                        text: "\u2715"
                        onClicked: banner.visible = false
                    }
                }
            }

            DocumentProblemPanel {
                visible: !zuConfig.documentUsable
                Layout.fillWidth: true
                Layout.fillHeight: true
                onRestoreRequested: window.askRestore(number, timeText)
                onStartFromDefaultsRequested: defaultsConfirm.open()
            }

            StackLayout {
                id: pages
                visible: zuConfig.documentUsable
                Layout.fillWidth: true
                Layout.fillHeight: true
                currentIndex: pageList.currentIndex
                GeneralPage { objectName: "page_general" }
                RegionalPage { objectName: "page_regional" }
                FoldersPage { objectName: "page_folders" }
                SequencerPage { objectName: "page_sequencer" }
                TemplatesPage { objectName: "page_templates" }
                SyncPage { objectName: "page_sync" }
            }
        }
    }

    // Only where the on-screen keyboard is the input method (the application chooses it unless
    // the environment named another one).
    Loader {
        id: keyboard
        active: station.virtualKeyboard
        source: "KeyboardPanel.qml"
    }
}
