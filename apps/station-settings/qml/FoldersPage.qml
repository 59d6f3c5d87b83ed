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

    // Beside the list when the page is wide enough for both, else below it (the page then scrolls).
    readonly property bool sideBySide: width >= 1000
    readonly property int listWidth: sideBySide ? 440 : width - 32

    ConfirmDialog {
        id: deleteConfirm
        objectName: "deleteFolderConfirm"
        //% "Delete a folder"
        title: qsTrId("StationSettings_Folders_delete_title")
        //% "Delete the folder %1? Its role is left without a folder until another one takes it."
        text: directories.selectedFolder ? qsTrId("StationSettings_Folders_confirm_delete").arg(directories.selectedFolder.aliasName) : ""
        acceptText: qsTrId("StationSettings_Delete")
        onAccepted: {
            directories.deleteSelectedFolder()
            window.unsaved = true
        }
    }

    Flickable {
        id: flick
        anchors.fill: parent
        clip: true
        contentWidth: width
        contentHeight: layout.height + 32
        interactive: contentHeight > height
        boundsBehavior: Flickable.StopAtBounds
        ScrollIndicator.vertical: ScrollIndicator {}

    GridLayout {
        id: layout
        x: 16
        y: 16
        width: flick.width - 32
        // Fills the page beside the list, and grows (the page then scrolls) when the editor needs more.
        height: page.sideBySide ? Math.max(flick.height - 32, editor.implicitHeight) : implicitHeight
        columns: page.sideBySide ? 2 : 1
        columnSpacing: 16
        rowSpacing: 16

        ColumnLayout {
            Layout.fillHeight: page.sideBySide
            Layout.preferredWidth: page.listWidth
            Layout.maximumWidth: page.listWidth
            Layout.alignment: Qt.AlignTop
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
                Layout.fillHeight: page.sideBySide
                Layout.preferredHeight: page.sideBySide ? -1 : 300
                padding: 1
                ListView {
                    id: folderList
                    objectName: "folderList"
                    anchors.fill: parent
                    clip: true
                    model: directories.folders
                    currentIndex: directories.selectedFolderIndex
                    ScrollIndicator.vertical: ScrollIndicator {}
                    delegate: ItemDelegate {
                        id: row
                        property var folder: object
                        // Rows may outlive their folder for a moment while the list is rebuilt.
                        readonly property bool ready: folder !== null && folder !== undefined
                        width: ListView.view.width
                        height: 64
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

            Flow {
                Layout.fillWidth: true
                spacing: 8
                TouchButton {
                    objectName: "newFolderButton"
                    //% "New folder"
                    text: qsTrId("StationSettings_Folders_new")
                    onClicked: editor.startNew()
                }
                TouchButton {
                    objectName: "deleteFolderButton"
                    //% "Delete"
                    text: qsTrId("StationSettings_Delete")
                    enabled: directories.isSelectedFolderDeletable && !editor.creating
                    onClicked: deleteConfirm.open()
                }
                TouchButton {
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
            Layout.fillHeight: page.sideBySide
            Layout.minimumHeight: implicitHeight
            Layout.alignment: Qt.AlignTop
        }
    }
    }
}
