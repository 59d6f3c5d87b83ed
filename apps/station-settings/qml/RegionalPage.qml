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

    // A combo box over a list of texts that follows the setting and reports the operator's choice.
    component ChoiceBox: TouchComboBox {
        property string current
        signal chosen(string value)
        Layout.preferredWidth: 260
        currentIndex: model ? model.indexOf(current) : -1
        onActivated: chosen(currentText)
    }

    ColumnLayout {
        width: page.availableWidth - 32
        x: 16
        spacing: 16

        Label {
            //% "Regional settings"
            text: qsTrId("StationSettings_Page_regional")
            font.pixelSize: 20
            Layout.topMargin: 16
        }

        Section {
            //% "Time zone"
            title: qsTrId("StationSettings_Regional_time_zone")
            Label {
                //% "Region"
                text: qsTrId("StationSettings_Regional_region")
            }
            ChoiceBox {
                objectName: "regionBox"
                model: zuConfig.regions
                current: zuConfig.currentRegion
                onChosen: {
                    zuConfig.currentRegion = value
                    zuConfig.setRegion(value, zuConfig.cities.length > 0 ? zuConfig.cities[0] : "")
                }
            }
            Label {
                //% "City"
                text: qsTrId("StationSettings_Regional_city")
            }
            ChoiceBox {
                objectName: "cityBox"
                model: zuConfig.cities
                current: zuConfig.currentCity
                onChosen: zuConfig.setRegion(zuConfig.currentRegion, value)
            }
            Label {
                //% "Time now"
                text: qsTrId("StationSettings_Regional_time_now")
            }
            Label {
                text: dateTime.currentDate + "  " + dateTime.currentTime
            }
        }

        Section {
            //% "Formats"
            title: qsTrId("StationSettings_Regional_formats")
            Label {
                //% "Hour format"
                text: qsTrId("StationSettings_Regional_hour_format")
            }
            ChoiceBox {
                objectName: "hourFormatBox"
                model: zuConfig.hourFormats
                current: zuConfig.currentHourFormat
                onChosen: zuConfig.setFormats(value, zuConfig.currentDateFormat)
            }
            Label {
                //% "Date format"
                text: qsTrId("StationSettings_Regional_date_format")
            }
            ChoiceBox {
                objectName: "dateFormatBox"
                model: zuConfig.dateFormats
                current: zuConfig.currentDateFormat
                onChosen: zuConfig.setFormats(zuConfig.currentHourFormat, value)
            }
            Label {
                //% "Display"
                text: qsTrId("StationSettings_Regional_display")
            }
            RowLayout {
                CheckBox {
                    //% "Show the date"
                    text: qsTrId("StationSettings_Regional_display_date")
                    checked: zuConfig.displayDate
                    onToggled: zuConfig.displayDate = checked
                }
                CheckBox {
                    //% "Show the seconds"
                    text: qsTrId("StationSettings_Regional_display_seconds")
                    checked: zuConfig.displaySeconds
                    onToggled: zuConfig.displaySeconds = checked
                }
            }
        }

        Section {
            //% "Time server"
            title: qsTrId("StationSettings_Regional_time_server")
            Label {
                //% "Server"
                text: qsTrId("StationSettings_Regional_server")
            }
            CheckBox {
                objectName: "defaultNtpBox"
                //% "Use the default time server"
                text: qsTrId("StationSettings_Regional_use_default_ntp")
                checked: zuConfig.useDefaultNtp
                onToggled: zuConfig.useDefaultNtp = checked
            }
            Label {
                //% "Custom server"
                text: qsTrId("StationSettings_Regional_custom_ntp")
            }
            TouchField {
                objectName: "customNtpField"
                Layout.preferredWidth: 260
                enabled: !zuConfig.useDefaultNtp
                text: zuConfig.customNtp
                //% "host name or address"
                placeholderText: qsTrId("StationSettings_Regional_custom_ntp_placeholder")
                onTextEdited: zuConfig.customNtp = text
            }
        }

        Section {
            //% "Units"
            title: qsTrId("StationSettings_Regional_units")
            Label {
                //% "Torque"
                text: qsTrId("StationSettings_Regional_torque")
            }
            ChoiceBox {
                model: station.torqueUnits
                current: zuConfig.torqueUnit
                onChosen: zuConfig.torqueUnit = value
            }
            Label {
                //% "Weight"
                text: qsTrId("StationSettings_Regional_weight")
            }
            ChoiceBox {
                model: station.weightUnits
                current: zuConfig.weightUnit
                onChosen: zuConfig.weightUnit = value
            }
            Label {
                //% "Distance"
                text: qsTrId("StationSettings_Regional_distance")
            }
            ChoiceBox {
                model: station.distanceUnits
                current: zuConfig.distanceUnit
                onChosen: zuConfig.distanceUnit = value
            }
            Label {
                //% "Temperature"
                text: qsTrId("StationSettings_Regional_temperature")
            }
            ChoiceBox {
                model: station.temperatureUnits
                current: zuConfig.temperatureUnit
                onChosen: zuConfig.temperatureUnit = value
            }
        }

        Section {
            //% "Language and keyboard"
            title: qsTrId("StationSettings_Regional_language_keyboard")
            Layout.bottomMargin: 16
            Label {
                //% "Language"
                text: qsTrId("StationSettings_Regional_language")
            }
            ChoiceBox {
                objectName: "languageBox"
                model: station.languages
                current: zuConfig.currentLanguage
                onChosen: zuConfig.currentLanguage = value
            }
            Label {
                //% "Keyboard"
                text: qsTrId("StationSettings_Regional_keyboard")
            }
            ChoiceBox {
                objectName: "keyboardBox"
                model: zuConfig.keyboardLayouts
                current: zuConfig.keyboardInput
                onChosen: zuConfig.keyboardInput = value
            }
        }
    }
}
