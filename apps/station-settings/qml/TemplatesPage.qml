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

    function logoUrl() {
        if (zuConfig.companyLogo.length === 0)
            return ""
        return "file://" + zuConfig.mediaDirectoryPath + "/" + zuConfig.companyLogo
    }

    ConfirmDialog {
        id: deleteTemplateConfirm
        objectName: "deleteTemplateConfirm"
        readonly property string fileName: templates.currentIndex >= 0 ? directories.templatesList[templates.currentIndex] || "" : ""
        //% "Delete a template"
        title: qsTrId("StationSettings_Templates_delete_title")
        //% "Delete the template %1 from the station? The file is removed at once."
        text: qsTrId("StationSettings_Templates_confirm_delete").arg(fileName)
        acceptText: qsTrId("StationSettings_Delete")
        onAccepted: {
            zuConfig.deleteTemplateFile(fileName)
            templates.currentIndex = -1
            // Only the template list is read again: the other settings keep their unsaved edits.
            station.refreshTemplates()
        }
    }

    // A file of the station's storage or of the removable medium is copied into the templates
    // folder; one of the same name already there is kept, and the operator told.
    FilePicker {
        id: templatePicker
        objectName: "templatePicker"
        //% "Add a report template"
        title: qsTrId("StationSettings_Picker_template_title")
        nameFilters: ["*.lrxml"]
        onPicked: {
            var name = path.substring(path.lastIndexOf("/") + 1)
            if (directories.templatesList.indexOf(name) >= 0) {
                //% "A template named %1 is already on the station: delete it first to replace it."
                window.showMessage(qsTrId("StationSettings_Templates_exists").arg(name), true)
            } else if (zuConfig.addTemplateFile(path).length === 0
                       || directories.getFilesForPath(directories.getTemplatesDirectoryPath(), [name]).length === 0) {
                window.showMessage(qsTrId("StationSettings_Templates_not_added").arg(path), true)
            }
        }
    }
    // The logo is copied into the media folder, unless it is there already.
    FilePicker {
        id: logoPicker
        objectName: "logoPicker"
        //% "Choose the logo"
        title: qsTrId("StationSettings_Picker_logo_title")
        nameFilters: ["*.png", "*.jpg", "*.jpeg", "*.svg", "*.bmp"]
        preview: true
        onPicked: {
            var name = path.substring(path.lastIndexOf("/") + 1)
            var media = zuConfig.mediaDirectoryPath
            var inMedia = path === media + "/" + name
            if (!inMedia && directories.getFilesForPath(media, [name]).length > 0) {
                //% "A file named %1 is already in the media folder: choose it there, or rename the new one."
                window.showMessage(qsTrId("StationSettings_Templates_logo_exists").arg(name), true)
            } else if (!inMedia && zuConfig.addCompanyLogo(path).length === 0) {
                window.showMessage(qsTrId("StationSettings_Templates_not_added").arg(path), true)
            } else {
                zuConfig.companyLogo = name
            }
        }
    }

    ColumnLayout {
        width: page.availableWidth - 32
        x: 16
        spacing: 16

        Label {
            //% "Templates and logo"
            text: qsTrId("StationSettings_Page_templates")
            font.pixelSize: 20
            Layout.topMargin: 16
        }

        GroupBox {
            //% "Report templates"
            title: qsTrId("StationSettings_Templates_templates")
            Layout.fillWidth: true
            ColumnLayout {
                anchors.left: parent.left
                anchors.right: parent.right
                spacing: 6
                Frame {
                    Layout.fillWidth: true
                    Layout.preferredHeight: 140
                    padding: 1
                    ListView {
                        id: templates
                        objectName: "templateList"
                        anchors.fill: parent
                        clip: true
                        model: directories.templatesList
                        currentIndex: -1
                        ScrollIndicator.vertical: ScrollIndicator {}
                        delegate: ItemDelegate {
                            width: ListView.view.width
                            height: 48
                            text: modelData
                            highlighted: ListView.isCurrentItem
                            onClicked: templates.currentIndex = index
                        }
                    }
                    Label {
                        anchors.centerIn: parent
                        visible: templates.count === 0
                        //% "No template yet"
                        text: qsTrId("StationSettings_Templates_none")
                        opacity: 0.6
                    }
                }
                RowLayout {
                    TouchButton {
                        objectName: "addTemplateButton"
                        //% "Add a template..."
                        text: qsTrId("StationSettings_Templates_add_template")
                        onClicked: templatePicker.open()
                    }
                    TouchButton {
                        objectName: "deleteTemplateButton"
                        text: qsTrId("StationSettings_Delete")
                        enabled: templates.currentIndex >= 0
                        onClicked: deleteTemplateConfirm.open()
                    }
                }
            }
        }

        GroupBox {
            //% "Company"
            title: qsTrId("StationSettings_Templates_company")
            Layout.fillWidth: true
            RowLayout {
                anchors.left: parent.left
                anchors.right: parent.right
                spacing: 16
                Rectangle {
                    Layout.preferredWidth: 180
                    Layout.preferredHeight: 120
                    Layout.alignment: Qt.AlignTop
                    color: "#ffffff"
                    border.color: "#c8ccd0"
                    Image {
                        id: logo
                        anchors.fill: parent
                        anchors.margins: 8
                        fillMode: Image.PreserveAspectFit
                        source: page.logoUrl()
                        cache: false
                    }
                    Label {
                        anchors.centerIn: parent
                        visible: logo.status !== Image.Ready
                        //% "No logo"
                        text: qsTrId("StationSettings_Templates_no_logo")
                        opacity: 0.6
                    }
                }
                GridLayout {
                    columns: 2
                    columnSpacing: 16
                    rowSpacing: 8
                    Layout.fillWidth: true
                    Label {
                        //% "Logo file"
                        text: qsTrId("StationSettings_Templates_logo")
                    }
                    RowLayout {
                        Layout.fillWidth: true
                        Label {
                            objectName: "logoName"
                            Layout.fillWidth: true
                            elide: Text.ElideMiddle
                            text: zuConfig.companyLogo.length > 0 ? zuConfig.companyLogo : qsTrId("StationSettings_Templates_no_logo")
                        }
                        TouchButton {
                            objectName: "chooseLogoButton"
                            //% "Choose a logo..."
                            text: qsTrId("StationSettings_Templates_choose_logo")
                            onClicked: logoPicker.open()
                        }
                    }
                    Label {
                        //% "Address"
                        text: qsTrId("StationSettings_Templates_address")
                        Layout.alignment: Qt.AlignTop
                    }
                    TextArea {
                        id: addressArea
                        Layout.fillWidth: true
                        Layout.preferredHeight: 60
                        wrapMode: TextEdit.Wrap
                        text: zuConfig.companyAddress
                        background: Rectangle { border.color: "#c8ccd0"; color: "white" }
                    }
                    Label {
                        //% "Report footer"
                        text: qsTrId("StationSettings_Templates_footer")
                    }
                    TouchField {
                        id: footerField
                        Layout.fillWidth: true
                        text: zuConfig.reportFooter
                    }
                    Item { width: 1; height: 1 }
                    TouchButton {
                        //% "Apply to the reports"
                        text: qsTrId("StationSettings_Templates_apply_parameters")
                        enabled: addressArea.text !== zuConfig.companyAddress || footerField.text !== zuConfig.reportFooter
                        onClicked: zuConfig.saveTemplateParameters(addressArea.text, footerField.text)
                    }
                }
            }
        }
    }
}
