import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import App 1.0

Item {
    id: page

    // Connection state of each network folder by alias, from the folders' status reports.
    property var statusByAlias: ({})

    function statusText(status) {
        if (!status)
            return ""
        switch (status.state) {
        case "detecting":
            //% "Looking for the server %1"
            return qsTrId("StationSettings_Folders_status_detecting").arg(status.serverIp)
        case "retrying":
            //% "Server %1 answered, connecting"
            return qsTrId("StationSettings_Folders_status_retrying").arg(status.serverIp)
        case "mounting":
            //% "Connecting, attempt %1 of %2"
            return qsTrId("StationSettings_Folders_status_mounting").arg(status.attempt).arg(status.maxAttempts)
        case "mounted":
            //% "Connected"
            return qsTrId("StationSettings_Folders_status_mounted")
        }
        return ""
    }

    RowLayout {
        anchors.fill: parent
        anchors.margins: 16
        spacing: 16

        ColumnLayout {
            Layout.fillHeight: true
            Layout.preferredWidth: 470
            spacing: 8

            Label {
                //% "Folders"
                text: qsTrId("StationSettings_Page_folders")
                font.pixelSize: 20
            }
            Label {
                //% "Network folders: %1 of %2 connected - removable: %3 of %4"
                text: qsTrId("StationSettings_Folders_counters")
                      .arg(directories.connectedNetworkStorageNbr).arg(directories.configuredNetworkStorageNbr)
                      .arg(directories.connectedRemovableStorageNbr).arg(directories.configuredRemovableStorageNbr)
                opacity: 0.7
            }

            Frame {
                Layout.fillWidth: true
                Layout.fillHeight: true
                padding: 1
                ListView {
                    id: folderList
                    objectName: "folderList"
                    anchors.fill: parent
                    clip: true
                    model: directories.folders
                    currentIndex: directories.selectedFolderIndex
                    ScrollBar.vertical: ScrollBar {}
                    delegate: ItemDelegate {
                        id: row
                        property var folder: object
                        // Rows may outlive their folder for a moment while the list is rebuilt.
                        readonly property bool ready: folder !== null && folder !== undefined
                        width: ListView.view.width
                        height: 58
                        highlighted: ListView.isCurrentItem
                        onClicked: directories.selectFolder(index)

                        Connections {
                            target: row.folder
                            function onFolderStatusChanged(aliasName, statusData) {
                                var table = page.statusByAlias
                                table[aliasName] = statusData
                                page.statusByAlias = table
                            }
                        }

                        contentItem: RowLayout {
                            spacing: 10
                            Rectangle {
                                width: 12
                                height: 12
                                radius: 6
                                color: !row.ready || !row.folder.isEnabled ? "#b0b0b0" : row.folder.isAvailable ? "#3c9d40" : "#d9534f"
                            }
                            ColumnLayout {
                                spacing: 2
                                Layout.fillWidth: true
                                Label {
                                    text: row.ready ? row.folder.aliasName : ""
                                    font.bold: true
                                    elide: Text.ElideRight
                                    Layout.fillWidth: true
                                }
                                Label {
                                    text: row.ready ? row.folder.typeName + "  " + row.folder.displayPath : ""
                                    opacity: 0.7
                                    font.pixelSize: 11
                                    elide: Text.ElideMiddle
                                    Layout.fillWidth: true
                                }
                            }
                            ColumnLayout {
                                spacing: 2
                                Label {
                                    Layout.alignment: Qt.AlignRight
                                    text: row.ready ? directories.getRoleNameOfFolder(row.folder.id) : ""
                                    font.pixelSize: 11
                                }
                                Label {
                                    Layout.alignment: Qt.AlignRight
                                    font.pixelSize: 11
                                    opacity: 0.7
                                    text: {
                                        if (!row.ready)
                                            return ""
                                        if (!row.folder.isEnabled)
                                            //% "Disabled"
                                            return qsTrId("StationSettings_Folders_disabled")
                                        if (row.folder.isAvailable)
                                            //% "Available"
                                            return qsTrId("StationSettings_Folders_available")
                                        var status = page.statusText(page.statusByAlias[row.folder.aliasName])
                                        //% "Unavailable"
                                        return status.length > 0 ? status : qsTrId("StationSettings_Folders_unavailable")
                                    }
                                }
                            }
                        }
                    }
                }
            }

            RowLayout {
                Button {
                    objectName: "newFolderButton"
                    //% "New folder"
                    text: qsTrId("StationSettings_Folders_new")
                    onClicked: editor.startNew()
                }
                Button {
                    objectName: "deleteFolderButton"
                    //% "Delete"
                    text: qsTrId("StationSettings_Delete")
                    enabled: directories.isSelectedFolderDeletable && !editor.creating
                    onClicked: {
                        directories.deleteSelectedFolder()
                        window.unsaved = true
                    }
                }
                Button {
                    objectName: "retryFolderButton"
                    //% "Retry connection"
                    text: qsTrId("StationSettings_Folders_retry")
                    enabled: !editor.creating && directories.selectedFolder !== null
                             && directories.selectedFolder.type === FolderAlias.C_folderTypeNetwork
                    onClicked: directories.retryFolderConnection(directories.selectedFolder.aliasName)
                }
            }
        }

        FolderEditor {
            id: editor
            objectName: "folderEditor"
            Layout.fillWidth: true
            Layout.fillHeight: true
        }
    }
}
