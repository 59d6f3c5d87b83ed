import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15

ScrollView {
    id: page
    clip: true
    contentWidth: availableWidth
    // Scrolled by flicking on the panel: the bar only shows where the page is.
    ScrollBar.vertical.interactive: false
    ScrollBar.horizontal.policy: ScrollBar.AlwaysOff

    readonly property var manager: directories.syncManager
    property bool idle: true
    // The manager tells no paused state: this screen remembers what it asked for.
    property bool paused: false
    property bool resetting: false
    property string resetMessage

    ConfirmDialog {
        id: resetConfirm
        objectName: "resetSyncConfirm"
        title: qsTrId("StationSettings_Sync_reset_button")
        //% "Reset the synchronisation database? The next pass compares and copies every mirrored file again."
        text: qsTrId("StationSettings_Sync_confirm_reset")
        //% "Reset"
        acceptText: qsTrId("StationSettings_Sync_reset")
        onAccepted: {
            page.resetting = true
            page.resetMessage = ""
            directories.resetSyncDatabase()
        }
    }

    Connections {
        target: page.manager
        ignoreUnknownSignals: true
        function onIdleChanged(idle) { page.idle = idle }
    }
    Connections {
        target: directories
        function onSyncDatabaseResetDone(success) {
            page.resetting = false
            page.resetMessage = success
                    //% "The synchronisation database was reset."
                    ? qsTrId("StationSettings_Sync_reset_done")
                    //% "The synchronisation database could not be reset."
                    : qsTrId("StationSettings_Sync_reset_failed")
            window.showMessage(page.resetMessage, !success)
        }
    }

    ColumnLayout {
        width: page.availableWidth - 32
        x: 16
        spacing: 16

        Label {
            //% "Synchronisation"
            text: qsTrId("StationSettings_Page_sync")
            font.pixelSize: 20
            Layout.topMargin: 16
        }

        Section {
            //% "State"
            title: qsTrId("StationSettings_Sync_state")
            Label {
                //% "Synchronisation"
                text: qsTrId("StationSettings_Page_sync")
            }
            Label {
                objectName: "syncStateLabel"
                font.bold: true
                text: !page.manager
                      //% "Not available on this station"
                      ? qsTrId("StationSettings_Sync_unavailable")
                      : page.paused
                        //% "Paused"
                        ? qsTrId("StationSettings_Sync_paused")
                        : page.idle
                          //% "Waiting for the next pass"
                          ? qsTrId("StationSettings_Sync_idle")
                          //% "Copying files"
                          : qsTrId("StationSettings_Sync_running")
            }
            Label {
                //% "Mirrored folders"
                text: qsTrId("StationSettings_Sync_mirrored")
            }
            Label {
                text: directories.hasSynchronizedDistantFolder
                      //% "At least one folder is mirrored to a network folder"
                      ? qsTrId("StationSettings_Sync_has_mirror")
                      //% "No folder is mirrored"
                      : qsTrId("StationSettings_Sync_no_mirror")
            }
            Item { width: 1; height: 1 }
            RowLayout {
                TouchButton {
                    objectName: "pauseSyncButton"
                    //% "Pause"
                    text: qsTrId("StationSettings_Sync_pause")
                    enabled: page.manager !== null && !page.paused
                    onClicked: {
                        directories.pauseAllSync()
                        page.paused = true
                    }
                }
                TouchButton {
                    objectName: "resumeSyncButton"
                    //% "Resume"
                    text: qsTrId("StationSettings_Sync_resume")
                    enabled: page.manager !== null && page.paused
                    onClicked: {
                        directories.resumeAllSync()
                        page.paused = false
                    }
                }
            }
        }

        Section {
            //% "Reset"
            title: qsTrId("StationSettings_Sync_reset")
            columns: 1
            Label {
                //% "Forgets what was copied and copies every mirrored folder again. Files replaced on the network folder go to the trash first."
                text: qsTrId("StationSettings_Sync_reset_explanation")
                wrapMode: Text.Wrap
                Layout.fillWidth: true
            }
            RowLayout {
                TouchButton {
                    objectName: "resetSyncButton"
                    //% "Reset the synchronisation database"
                    text: qsTrId("StationSettings_Sync_reset_button")
                    enabled: !page.resetting
                    onClicked: resetConfirm.open()
                }
                BusyIndicator {
                    running: page.resetting
                    visible: running
                    Layout.preferredHeight: 32
                    Layout.preferredWidth: 32
                }
                Label {
                    text: page.resetting
                          //% "Resetting..."
                          ? qsTrId("StationSettings_Sync_resetting")
                          : page.resetMessage
                }
            }
        }
    }
}
