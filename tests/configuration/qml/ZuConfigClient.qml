import QtQml 2.15

// A user-interface client of the context properties published by the configuration service.
QtObject {
    property string workplace: zuConfig.workplaceName
    property int volume: zuConfig.soundVolume
    property bool is24h: zuConfig.isCurrent24HoursFormat
    property int relationCount: zuConfig.sequenceIoRelations.count
    property int skipCount: zuConfig.skipComments.length
    property QtObject folders: directories
    property QtObject clock: dateTime

    function writeSettings() {
        zuConfig.workplaceName = "Written from QML"
        zuConfig.soundVolume = 150
        zuConfig.displayDate = true
        zuConfig.customNtp = "ntp.qml"
        zuConfig.sequenceScriptPath = "launch.js"
        zuConfig.setFormats("12 h", "YYYY-MM-DD")
        zuConfig.addSkipComment("From QML")
        zuConfig.updateValidator({ "serial": "^[A-Z]+$" })
        return zuConfig.sequenceScriptPath
    }

    function addRelation(code, name) {
        return zuConfig.addSequenceIoRelation(code, name)
    }

    function validator(name) {
        return zuConfig.getValidator(name)
    }
}
