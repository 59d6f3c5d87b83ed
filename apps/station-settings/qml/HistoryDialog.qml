import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15

// The kept versions of the settings document, reachable from the header at any time.
Dialog {
    id: dialog
    objectName: "historyDialog"
    signal restoreRequested(int number, string timeText)
    modal: true
    anchors.centerIn: Overlay.overlay
    width: Math.min(parent.width - 40, 900)
    height: parent.height - 40
    padding: 12
    // Framed without the style's shadow layer, which a software-rendered panel cannot show.
    background: Rectangle {
        color: "#ffffff"
        border.color: "#78909c"
        radius: 4
    }
    //% "Kept versions of the settings document"
    title: qsTrId("StationSettings_History_title")
    onAboutToShow: station.refreshHistory()

    ColumnLayout {
        anchors.fill: parent
        spacing: 8
        Label {
            Layout.fillWidth: true
            wrapMode: Text.Wrap
            //% "Before each save replaces the document, the document is kept here (newest first). Restoring a version writes it over the document and reads it again; the document it replaces is kept as a version too."
            text: qsTrId("StationSettings_History_explanation")
            opacity: 0.8
        }
        HistoryList {
            objectName: "historyDialogList"
            Layout.fillWidth: true
            Layout.fillHeight: true
            onRestoreRequested: dialog.restoreRequested(number, timeText)
        }
    }

    footer: RowLayout {
        Item { Layout.fillWidth: true }
        TouchButton {
            objectName: "closeHistoryButton"
            Layout.margins: 8
            //% "Close"
            text: qsTrId("StationSettings_Close")
            onClicked: dialog.close()
        }
    }
}
