import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15

// Shown instead of the pages while the settings document on disk cannot be used. The station
// runs on defaults in memory, the file is left as it is and Save is disabled; the two ways out
// are restoring a kept version or moving the damaged file aside and starting from defaults.
Pane {
    id: panel
    objectName: "documentProblemPanel"
    signal restoreRequested(int number, string timeText)
    signal startFromDefaultsRequested()
    // Empty or stopping short: a write interrupted by a crash or a power cut.
    readonly property bool cutShort: station.documentDamage === "empty" || station.documentDamage === "torn"
    padding: 16

    ColumnLayout {
        anchors.fill: parent
        spacing: 10

        Rectangle {
            Layout.fillWidth: true
            implicitHeight: problem.implicitHeight + 20
            radius: 4
            color: "#fde2e1"
            border.color: "#d9534f"
            border.width: 2
            ColumnLayout {
                id: problem
                anchors.fill: parent
                anchors.margins: 10
                spacing: 4
                Label {
                    //% "The settings document cannot be used"
                    text: qsTrId("StationSettings_Document_unusable_title")
                    font.bold: true
                    font.pixelSize: 17
                    color: "#8a1f1b"
                }
                Label {
                    objectName: "documentProblemPath"
                    Layout.fillWidth: true
                    wrapMode: Text.WrapAnywhere
                    //% "File: %1"
                    text: qsTrId("StationSettings_Document_file").arg(zuConfig.documentFilePath)
                }
                Label {
                    objectName: "documentProblemReason"
                    Layout.fillWidth: true
                    wrapMode: Text.Wrap
                    text: zuConfig.documentErrorLine > 0
                          //% "Problem: %1, at line %2, column %3"
                          ? qsTrId("StationSettings_Document_reason_at").arg(zuConfig.documentProblem)
                                                                        .arg(zuConfig.documentErrorLine).arg(zuConfig.documentErrorColumn)
                          //% "Problem: %1"
                          : qsTrId("StationSettings_Document_reason").arg(zuConfig.documentProblem)
                }
                Label {
                    objectName: "documentProblemCause"
                    Layout.fillWidth: true
                    visible: panel.cutShort
                    wrapMode: Text.Wrap
                    font.bold: true
                    text: station.documentDamage === "empty"
                          //% "The file is empty: it was most likely being written when the station stopped (a crash or a power cut)."
                          ? qsTrId("StationSettings_Document_empty")
                          //% "The file stops before the document is complete: it was most likely being written when the station stopped (a crash or a power cut)."
                          : qsTrId("StationSettings_Document_torn")
                }
                Label {
                    objectName: "documentProblemUnchanged"
                    Layout.fillWidth: true
                    wrapMode: Text.Wrap
                    //% "Nothing was changed: the file stays as it is. The screens show default settings and Save is disabled until the document is restored or replaced."
                    text: qsTrId("StationSettings_Document_unchanged")
                }
            }
        }

        Label {
            //% "Restore a kept version"
            text: qsTrId("StationSettings_Document_way_restore")
            font.bold: true
        }
        Label {
            objectName: "restoreNewestHint"
            Layout.fillWidth: true
            visible: panel.cutShort && historyList.count > 0
            wrapMode: Text.Wrap
            //% "Restore the newest version (marked): it is the document as it was before the last save."
            text: qsTrId("StationSettings_Document_restore_newest")
        }
        HistoryList {
            id: historyList
            objectName: "problemHistoryList"
            Layout.fillWidth: true
            Layout.fillHeight: true
            Layout.minimumHeight: 60
            recommended: panel.cutShort ? 0 : -1
            onRestoreRequested: panel.restoreRequested(number, timeText)
        }

        RowLayout {
            Layout.fillWidth: true
            spacing: 12
            Label {
                Layout.fillWidth: true
                wrapMode: Text.Wrap
                //% "Or start from the default settings: the damaged file is kept beside the document as %1.damaged-<time>, and the first save writes a new document."
                text: qsTrId("StationSettings_Document_way_defaults").arg(zuConfig.documentFilePath.replace(/.*\//, ""))
            }
            TouchButton {
                objectName: "startFromDefaultsButton"
                //% "Start from defaults..."
                text: qsTrId("StationSettings_Document_start_from_defaults")
                onClicked: panel.startFromDefaultsRequested()
            }
        }
    }
}
