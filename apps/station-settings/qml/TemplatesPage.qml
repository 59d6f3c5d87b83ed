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
                    TouchField {
                        id: templateFile
                        objectName: "templateFileField"
                        Layout.fillWidth: true
                        //% "path of a template file to add"
                        placeholderText: qsTrId("StationSettings_Templates_file_placeholder")
                    }
                    TouchButton {
                        text: qsTrId("StationSettings_Add")
                        enabled: templateFile.text.length > 0
                        onClicked: {
                            var name = zuConfig.addTemplateFile(templateFile.text)
                            if (name.length === 0)
                                //% "The file %1 could not be added."
                                window.showMessage(qsTrId("StationSettings_Templates_not_added").arg(templateFile.text), true)
                            else
                                templateFile.text = ""
                        }
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
                        TouchField {
                            id: logoField
                            Layout.fillWidth: true
                            text: zuConfig.companyLogo
                            //% "path of an image to use as logo"
                            placeholderText: qsTrId("StationSettings_Templates_logo_placeholder")
                        }
                        TouchButton {
                            //% "Use"
                            text: qsTrId("StationSettings_Templates_use_logo")
                            enabled: logoField.text.length > 0 && logoField.text !== zuConfig.companyLogo
                            onClicked: {
                                // A path outside the media folder is copied into it first.
                                var name = logoField.text.indexOf("/") >= 0 ? zuConfig.addCompanyLogo(logoField.text) : logoField.text
                                if (name.length === 0)
                                    window.showMessage(qsTrId("StationSettings_Templates_not_added").arg(logoField.text), true)
                                else
                                    zuConfig.companyLogo = name
                            }
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
