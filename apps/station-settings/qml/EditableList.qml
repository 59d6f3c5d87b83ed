import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15

// A list of texts with a field to add, change or remove the chosen one.
GroupBox {
    id: box
    property var items: []
    signal added(string text)
    signal edited(int index, string text)
    signal removed(int index)

    Layout.fillWidth: true

    ColumnLayout {
        anchors.left: parent.left
        anchors.right: parent.right
        spacing: 6
        Frame {
            Layout.fillWidth: true
            Layout.preferredHeight: 130
            padding: 1
            ListView {
                id: list
                anchors.fill: parent
                clip: true
                model: box.items
                currentIndex: -1
                ScrollIndicator.vertical: ScrollIndicator {}
                delegate: ItemDelegate {
                    width: ListView.view.width
                    height: 48
                    text: modelData
                    highlighted: ListView.isCurrentItem
                    onClicked: {
                        list.currentIndex = index
                        field.text = modelData
                    }
                }
            }
        }
        RowLayout {
            TouchField {
                id: field
                Layout.fillWidth: true
            }
            TouchButton {
                //% "Add"
                text: qsTrId("StationSettings_Add")
                enabled: field.text.length > 0
                onClicked: box.added(field.text)
            }
            TouchButton {
                //% "Change"
                text: qsTrId("StationSettings_Change")
                enabled: list.currentIndex >= 0 && field.text.length > 0
                onClicked: box.edited(list.currentIndex, field.text)
            }
            TouchButton {
                text: qsTrId("StationSettings_Delete")
                enabled: list.currentIndex >= 0
                onClicked: {
                    box.removed(list.currentIndex)
                    list.currentIndex = -1
                    field.text = ""
                }
            }
        }
    }
}
