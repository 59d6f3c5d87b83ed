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

    // The media directory prefix the library adds to the stored script path.
    function relativeToMedia(path) {
        var prefix = zuConfig.mediaDirectoryPath + "/"
        return path.indexOf(prefix) === 0 ? path.substring(prefix.length) : path
    }

    ColumnLayout {
        width: page.availableWidth - 32
        x: 16
        spacing: 16

        Label {
            //% "Sequencer"
            text: qsTrId("StationSettings_Page_sequencer")
            font.pixelSize: 20
            Layout.topMargin: 16
        }

        GroupBox {
            //% "Sequences launched by input code"
            title: qsTrId("StationSettings_Sequencer_relations")
            Layout.fillWidth: true
            ColumnLayout {
                anchors.left: parent.left
                anchors.right: parent.right
                spacing: 6
                Frame {
                    Layout.fillWidth: true
                    Layout.preferredHeight: 150
                    padding: 1
                    ColumnLayout {
                        anchors.fill: parent
                        spacing: 0
                        RowLayout {
                            Layout.fillWidth: true
                            Layout.leftMargin: 10
                            Label {
                                //% "Input code"
                                text: qsTrId("StationSettings_Sequencer_code")
                                font.bold: true
                                Layout.preferredWidth: 120
                            }
                            Label {
                                //% "Sequence"
                                text: qsTrId("StationSettings_Sequencer_sequence")
                                font.bold: true
                                Layout.fillWidth: true
                            }
                        }
                        ListView {
                            id: relations
                            objectName: "relationList"
                            Layout.fillWidth: true
                            Layout.fillHeight: true
                            clip: true
                            model: zuConfig.sequenceIoRelations
                            currentIndex: -1
                            ScrollIndicator.vertical: ScrollIndicator {}
                            delegate: ItemDelegate {
                                width: ListView.view.width
                                height: 48
                                highlighted: ListView.isCurrentItem
                                onClicked: {
                                    relations.currentIndex = index
                                    codeBox.value = object.binaryCode
                                    nameField.text = object.sequenceBaseName
                                }
                                contentItem: RowLayout {
                                    Label { text: object.binaryCode; Layout.preferredWidth: 120 }
                                    Label { text: object.sequenceBaseName; Layout.fillWidth: true; elide: Text.ElideRight }
                                }
                            }
                        }
                    }
                }
                RowLayout {
                    SpinBox {
                        id: codeBox
                        objectName: "relationCodeBox"
                        from: 1
                        to: 65535
                        editable: true
                    }
                    TouchField {
                        id: nameField
                        objectName: "relationNameField"
                        Layout.fillWidth: true
                        //% "sequence name"
                        placeholderText: qsTrId("StationSettings_Sequencer_sequence_placeholder")
                    }
                    TouchButton {
                        text: qsTrId("StationSettings_Add")
                        enabled: nameField.text.length > 0
                        onClicked: {
                            if (zuConfig.addSequenceIoRelation(codeBox.value, nameField.text))
                                relationMessage.text = ""
                            else
                                //% "Input code %1 already launches a sequence."
                                relationMessage.text = qsTrId("StationSettings_Sequencer_code_taken").arg(codeBox.value)
                        }
                    }
                    TouchButton {
                        text: qsTrId("StationSettings_Change")
                        enabled: relations.currentIndex >= 0 && nameField.text.length > 0
                        onClicked: zuConfig.editSequenceIoRelation(relations.currentIndex, codeBox.value, nameField.text)
                    }
                    TouchButton {
                        text: qsTrId("StationSettings_Delete")
                        enabled: relations.currentIndex >= 0
                        onClicked: {
                            zuConfig.removeSequenceIoRelation(relations.currentIndex)
                            relations.currentIndex = -1
                        }
                    }
                }
                Label {
                    id: relationMessage
                    visible: text.length > 0
                    color: "#b52b27"
                }
            }
        }

        RowLayout {
            spacing: 16
            Layout.fillWidth: true
            EditableList {
                //% "Skip comments"
                title: qsTrId("StationSettings_Sequencer_skip_comments")
                items: zuConfig.skipComments
                onAdded: zuConfig.addSkipComment(text)
                onEdited: zuConfig.editSkipComment(index, text)
                onRemoved: zuConfig.removeSkipComment(index)
            }
            EditableList {
                //% "Rework comments"
                title: qsTrId("StationSettings_Sequencer_rework_comments")
                items: zuConfig.reworkComments
                onAdded: zuConfig.addReworkComment(text)
                onEdited: zuConfig.editReworkComment(index, text)
                onRemoved: zuConfig.removeReworkComment(index)
            }
        }

        Section {
            //% "Options"
            title: qsTrId("StationSettings_Sequencer_options")
            Layout.bottomMargin: 16
            CheckBox {
                Layout.columnSpan: 2
                //% "Launch the sequence automatically"
                text: qsTrId("StationSettings_Sequencer_auto_launch")
                checked: zuConfig.sequenceAutoLaunch
                onToggled: zuConfig.sequenceAutoLaunch = checked
            }
            CheckBox {
                Layout.columnSpan: 2
                //% "Serial number given automatically"
                text: qsTrId("StationSettings_Sequencer_auto_serial")
                checked: zuConfig.sequenceAutoSerialNumber
                onToggled: zuConfig.sequenceAutoSerialNumber = checked
            }
            CheckBox {
                Layout.columnSpan: 2
                //% "Launch by input code"
                text: qsTrId("StationSettings_Sequencer_io_launch")
                checked: zuConfig.sequenceIoLaunch
                onToggled: zuConfig.sequenceIoLaunch = checked
            }
            CheckBox {
                Layout.columnSpan: 2
                //% "Launch by script"
                text: qsTrId("StationSettings_Sequencer_script_launch")
                checked: zuConfig.sequenceScriptLaunch
                onToggled: zuConfig.sequenceScriptLaunch = checked
            }
            Label {
                //% "Script (in the media folder)"
                text: qsTrId("StationSettings_Sequencer_script_path")
            }
            TouchField {
                Layout.fillWidth: true
                enabled: zuConfig.sequenceScriptLaunch
                text: page.relativeToMedia(zuConfig.sequenceScriptPath)
                onTextEdited: zuConfig.sequenceScriptPath = text
            }
            Label {
                //% "Script data"
                text: qsTrId("StationSettings_Sequencer_script_data")
            }
            TouchField {
                Layout.fillWidth: true
                enabled: zuConfig.sequenceScriptLaunch
                text: page.relativeToMedia(zuConfig.sequenceScriptData)
                onTextEdited: zuConfig.sequenceScriptData = text
            }
            Label {
                //% "Status output"
                text: qsTrId("StationSettings_Sequencer_status_output")
            }
            TouchField {
                Layout.preferredWidth: 200
                text: zuConfig.sequenceStatusOutput
                onTextEdited: zuConfig.sequenceStatusOutput = text
            }
        }
    }
}
