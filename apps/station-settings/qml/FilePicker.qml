import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15

// Chooses a file on the station's internal storage or on the removable medium, browsed through
// the library's directory browsing (its sub-directory list, then the files matching
// `nameFilters`). With `preview`, the selected image shows beside the list. Opens at the root of
// the internal storage; picked(path) gives the chosen file's absolute path. Buttons are named
// <objectName>Choose and <objectName>Cancel, the list <objectName>List.
Dialog {
    id: picker
    property var nameFilters: []
    property bool preview: false
    // "internal" or "external" (the removable medium), as the library names the storage roots.
    property string folderType: "internal"
    property string selectedPath: ""
    // Rows: { name, directory (bool), index (in the library's sub-directory list) }.
    property var entries: []
    signal picked(string path)

    readonly property string rootPath: folderType === "external" ? directories.getRemovableStorageDirectoryPath()
                                                                 : directories.getInternalStorageDirectoryPath()
    readonly property string directoryPath: directories.currentRelativePath === "."
                                            ? rootPath : rootPath + "/" + directories.currentRelativePath

    function browse(type) {
        folderType = type
        directories.setCurrentRelativePath(type, "")
        refresh()
    }
    function refresh() {
        var rows = []
        var folders = directories.subDirectories
        for (var i = 0; i < folders.count; ++i)
            rows.push({ name: folders.get(i).name, directory: true, index: i })
        var files = directories.getFilesForPath(directoryPath, nameFilters)
        for (var j = 0; j < files.length; ++j)
            rows.push({ name: files[j], directory: false, index: -1 })
        entries = rows
        selectedPath = ""
    }

    Connections {
        target: directories
        enabled: picker.visible
        function onCurrentPathChanged() { picker.refresh() }
        // A medium pulled out while browsed: back to the internal storage.
        function onRemovableStorageStateChanged(available) {
            if (!available && picker.folderType === "external")
                picker.browse("internal")
        }
    }
    onAboutToShow: browse("internal")

    modal: true
    anchors.centerIn: Overlay.overlay
    // Declared inside pages that scroll: sized on the window, not on the page's content.
    width: Math.min(Overlay.overlay.width - 40, 900)
    height: Math.min(Overlay.overlay.height - 40, 640)
    padding: 12
    // Framed without the style's shadow layer, which a software-rendered panel cannot show.
    background: Rectangle {
        color: "#ffffff"
        border.color: "#78909c"
        radius: 4
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: 8
        RowLayout {
            Layout.fillWidth: true
            spacing: 8
            TouchButton {
                objectName: picker.objectName + "Internal"
                //% "Internal storage"
                text: qsTrId("StationSettings_Picker_internal")
                highlighted: picker.folderType === "internal"
                onClicked: picker.browse("internal")
            }
            TouchButton {
                objectName: picker.objectName + "Removable"
                //% "Removable medium"
                text: qsTrId("StationSettings_Picker_removable")
                highlighted: picker.folderType === "external"
                enabled: directories.removableStorageAvailable
                onClicked: picker.browse("external")
            }
            TouchButton {
                objectName: picker.objectName + "Up"
                //% "Up"
                text: qsTrId("StationSettings_Picker_up")
                enabled: directories.currentPathHasParent
                onClicked: directories.goToParentDirectory()
            }
            Label {
                Layout.fillWidth: true
                elide: Text.ElideMiddle
                text: directories.currentRelativePath === "." ? "/" : "/" + directories.currentRelativePath
            }
        }
        RowLayout {
            Layout.fillWidth: true
            Layout.fillHeight: true
            spacing: 8
            Frame {
                Layout.fillWidth: true
                Layout.fillHeight: true
                padding: 1
                ListView {
                    id: list
                    objectName: picker.objectName + "List"
                    anchors.fill: parent
                    clip: true
                    model: picker.entries
                    ScrollIndicator.vertical: ScrollIndicator {}
                    delegate: ItemDelegate {
                        readonly property string path: picker.directoryPath + "/" + modelData.name
                        width: ListView.view.width
                        height: 48
                        // Folders first, marked as such; a tap enters them.
                        text: modelData.directory ? "\u25b8  " + modelData.name + "/" : modelData.name
                        font.bold: modelData.directory
                        highlighted: !modelData.directory && picker.selectedPath === path
                        onClicked: {
                            if (modelData.directory)
                                directories.changeDirectory(modelData.index)
                            else
                                picker.selectedPath = path
                        }
                    }
                }
                Label {
                    anchors.centerIn: parent
                    visible: list.count === 0
                    //% "No folder and no matching file here"
                    text: qsTrId("StationSettings_Picker_empty")
                    opacity: 0.6
                }
            }
            Rectangle {
                visible: picker.preview
                Layout.preferredWidth: 220
                Layout.fillHeight: true
                color: "#ffffff"
                border.color: "#c8ccd0"
                Image {
                    id: previewImage
                    objectName: picker.objectName + "Preview"
                    anchors.fill: parent
                    anchors.margins: 8
                    fillMode: Image.PreserveAspectFit
                    source: picker.preview && picker.selectedPath.length > 0 ? "file://" + picker.selectedPath : ""
                    cache: false
                }
                Label {
                    anchors.centerIn: parent
                    width: parent.width - 16
                    horizontalAlignment: Text.AlignHCenter
                    wrapMode: Text.Wrap
                    visible: previewImage.status !== Image.Ready
                    //% "Choose an image to see it here"
                    text: qsTrId("StationSettings_Picker_no_preview")
                    opacity: 0.6
                }
            }
        }
    }

    footer: RowLayout {
        spacing: 8
        Item { Layout.fillWidth: true }
        TouchButton {
            objectName: picker.objectName + "Cancel"
            Layout.bottomMargin: 8
            text: qsTrId("StationSettings_Cancel")
            onClicked: picker.reject()
        }
        TouchButton {
            objectName: picker.objectName + "Choose"
            Layout.bottomMargin: 8
            Layout.rightMargin: 8
            highlighted: true
            //% "Choose"
            text: qsTrId("StationSettings_Picker_choose")
            enabled: picker.selectedPath.length > 0
            onClicked: {
                var path = picker.selectedPath
                picker.accept()
                picker.picked(path)
            }
        }
    }
}
