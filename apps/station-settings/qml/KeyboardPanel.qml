import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.VirtualKeyboard 2.15
import QtQuick.VirtualKeyboard.Settings 2.15

// The on-screen keyboard, at the bottom of the window while a field has the focus, in the
// language of the station's keyboard map.
InputPanel {
    id: panel
    objectName: "inputPanel"
    readonly property string localeInUse: VirtualKeyboardSettings.locale

    // The keyboard map by the layout's code or by the name the library shows for it.
    readonly property var locales: ({ "gb": "en_GB", "us": "en_US", "fr": "fr_FR", "de": "de_DE",
                                      "es": "es_ES", "it": "it_IT",
                                      "English (UK)": "en_GB", "English (US)": "en_US", "Fran\u00e7ais": "fr_FR",
                                      "Deutsch": "de_DE", "Espa\u00f1ol": "es_ES", "Italiano": "it_IT" })
    function localeFor(layout) {
        var locale = locales[layout] || "en_GB"
        var available = VirtualKeyboardSettings.availableLocales
        return available.indexOf(locale) >= 0 || available.length === 0 ? locale : available[0]
    }
    Binding {
        target: VirtualKeyboardSettings
        property: "locale"
        value: panel.localeFor(zuConfig.keyboardInput)
    }

    z: 100
    parent: Overlay.overlay
    // Its height follows its width: kept to a hand's span on wide screens.
    width: Math.min(parent.width, 900)
    x: (parent.width - width) / 2
    // Below the window until a field takes the focus.
    y: active ? parent.height - height : parent.height
}
