import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15

// A question with one action and Cancel; the buttons are named <objectName>Accept / <objectName>Cancel.
Dialog {
    id: dialog
    property alias text: message.text
    property alias acceptText: acceptButton.text
    modal: true
    anchors.centerIn: Overlay.overlay
    width: Math.min(parent.width - 80, 560)
    padding: 16
    // Framed without the style's shadow layer, which a software-rendered panel cannot show.
    background: Rectangle {
        color: "#ffffff"
        border.color: "#78909c"
        radius: 4
    }

    Label {
        id: message
        objectName: dialog.objectName + "Text"
        width: dialog.availableWidth
        wrapMode: Text.Wrap
    }

    footer: RowLayout {
        spacing: 8
        Item { Layout.fillWidth: true }
        TouchButton {
            objectName: dialog.objectName + "Cancel"
            Layout.bottomMargin: 8
            //% "Cancel"
            text: qsTrId("StationSettings_Cancel")
            onClicked: dialog.reject()
        }
        TouchButton {
            id: acceptButton
            objectName: dialog.objectName + "Accept"
            Layout.bottomMargin: 8
            Layout.rightMargin: 8
            highlighted: true
            onClicked: dialog.accept()
        }
    }
}
