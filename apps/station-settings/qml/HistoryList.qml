import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15

// The kept versions of the settings document, newest first: when each was replaced, its size,
// the save that replaced it and the keys that save changed, and a restore button per row.
// Its rows' items are named after it: <objectName>Restore_<number>, ...Time_<number>, ...Keys_<number>.
Item {
    id: history
    signal restoreRequested(int number, string timeText)
    // The row drawn as the one to restore (-1: none).
    property int recommended: -1
    property alias count: list.count

    ListView {
        id: list
        objectName: history.objectName + "View"
        anchors.fill: parent
        clip: true
        spacing: 4
        model: station.history
        ScrollIndicator.vertical: ScrollIndicator {}
        delegate: Rectangle {
            width: ListView.view.width - 14
            height: row.implicitHeight + 12
            radius: 3
            color: index === history.recommended ? "#fff4d6" : "#ffffff"
            border.color: index === history.recommended ? "#e0a800" : "#d5d9de"

            RowLayout {
                id: row
                anchors.fill: parent
                anchors.margins: 6
                anchors.leftMargin: 10
                spacing: 12
                ColumnLayout {
                    Layout.preferredWidth: 150
                    spacing: 2
                    Label {
                        objectName: history.objectName + "Time_" + modelData.number
                        text: modelData.timeText
                        font.bold: true
                    }
                    Label {
                        //% "%1 bytes"
                        text: qsTrId("StationSettings_History_size").arg(modelData.size)
                        opacity: 0.7
                        font.pixelSize: 11
                    }
                }
                ColumnLayout {
                    Layout.fillWidth: true
                    spacing: 2
                    Label {
                        Layout.fillWidth: true
                        elide: Text.ElideRight
                        text: modelData.reason.length > 0
                              //% "Replaced by: %1"
                              ? qsTrId("StationSettings_History_replaced_by").arg(modelData.reason)
                              //% "Replaced by a program that gave no reason"
                              : qsTrId("StationSettings_History_no_reason")
                    }
                    Label {
                        objectName: history.objectName + "Keys_" + modelData.number
                        Layout.fillWidth: true
                        wrapMode: Text.Wrap
                        maximumLineCount: 2
                        elide: Text.ElideRight
                        font.pixelSize: 11
                        opacity: 0.8
                        text: modelData.changedKeys.length > 0
                              //% "It changed %1 key(s): %2"
                              ? qsTrId("StationSettings_History_changed_keys").arg(modelData.changedKeys.length)
                                                                               .arg(modelData.changedKeys.join(", "))
                              //% "It changed no key (the same settings, written again)"
                              : qsTrId("StationSettings_History_no_keys")
                    }
                }
                TouchButton {
                    objectName: history.objectName + "Restore_" + modelData.number
                    //% "Restore..."
                    text: qsTrId("StationSettings_History_restore")
                    highlighted: index === history.recommended
                    onClicked: history.restoreRequested(modelData.number, modelData.timeText)
                }
            }
        }
    }

    Label {
        objectName: history.objectName + "Empty"
        anchors.centerIn: parent
        visible: list.count === 0
        //% "No earlier version of the document is kept."
        text: qsTrId("StationSettings_History_empty")
        opacity: 0.7
    }
}
