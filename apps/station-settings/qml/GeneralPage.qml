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

    ColumnLayout {
        width: page.availableWidth - 32
        x: 16
        spacing: 16

        Label {
            //% "General"
            text: qsTrId("StationSettings_Page_general")
            font.pixelSize: 20
            Layout.topMargin: 16
        }

        Section {
            //% "Workplace"
            title: qsTrId("StationSettings_General_workplace")
            Label {
                //% "Workplace name"
                text: qsTrId("StationSettings_General_workplace_name")
            }
            TouchField {
                objectName: "workplaceNameField"
                Layout.fillWidth: true
                text: zuConfig.workplaceName
                onTextEdited: zuConfig.workplaceName = text
            }
            Label {
                //% "Production line"
                text: qsTrId("StationSettings_General_production_line")
            }
            TouchField {
                objectName: "productionLineField"
                Layout.fillWidth: true
                text: zuConfig.prodLineName
                onTextEdited: zuConfig.prodLineName = text
            }
        }

        Section {
            //% "Timeouts and limits"
            title: qsTrId("StationSettings_General_timeouts")
            Label {
                //% "Logout after inactivity (seconds)"
                text: qsTrId("StationSettings_General_inactivity_timeout")
            }
            SpinBox {
                objectName: "inactivityTimeoutBox"
                from: 0
                to: 86400
                stepSize: 30
                editable: true
                value: zuConfig.inactivityTimeout
                onValueModified: zuConfig.inactivityTimeout = value
            }
            Label {
                //% "Sequence warning threshold (%)"
                text: qsTrId("StationSettings_General_sequence_warning_threshold")
            }
            SpinBox {
                from: 0
                to: 100
                editable: true
                value: zuConfig.sequenceWarningThreshold
                onValueModified: zuConfig.sequenceWarningThreshold = value
            }
            Label {
                //% "Storage warning when less than (%) is free"
                text: qsTrId("StationSettings_General_storage_warning_limit")
            }
            SpinBox {
                from: 0
                to: 100
                editable: true
                value: zuConfig.availableStorageWarningLimit
                onValueModified: zuConfig.availableStorageWarningLimit = value
            }
        }

        Section {
            //% "Sound"
            title: qsTrId("StationSettings_General_sound")
            Label {
                //% "Volume"
                text: qsTrId("StationSettings_General_volume")
            }
            RowLayout {
                Slider {
                    id: volume
                    objectName: "soundVolumeSlider"
                    from: 0
                    to: 100
                    stepSize: 1
                    Layout.preferredWidth: 260
                    value: zuConfig.soundVolume
                    onMoved: zuConfig.soundVolume = Math.round(value)
                }
                Label { text: Math.round(volume.value) + " %" }
            }
        }

        Section {
            //% "Operator"
            title: qsTrId("StationSettings_General_operator")
            columns: 1
            CheckBox {
                //% "Log every user out automatically"
                text: qsTrId("StationSettings_General_force_auto_logout")
                checked: zuConfig.forceAutoLogoutForAllUsers
                onToggled: zuConfig.forceAutoLogoutForAllUsers = checked
            }
            CheckBox {
                //% "Hide the production timer"
                text: qsTrId("StationSettings_General_hide_production_timer")
                checked: zuConfig.hideProductionTimer
                onToggled: zuConfig.hideProductionTimer = checked
            }
            CheckBox {
                //% "The operator cannot choose the sequence"
                text: qsTrId("StationSettings_General_operator_cannot_select_sequence")
                checked: zuConfig.operatorCannotSelectSequence
                onToggled: zuConfig.operatorCannotSelectSequence = checked
            }
        }

        Label {
            objectName: "versionLabel"
            //% "Version %1"
            text: qsTrId("StationSettings_General_version").arg(Qt.application.version)
            opacity: 0.6
            Layout.bottomMargin: 16
        }
    }
}
