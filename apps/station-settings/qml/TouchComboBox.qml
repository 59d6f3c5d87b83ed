import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Controls.Material 2.15

// A combo box drawn without the style's shadow layers (which a software-rendered panel cannot
// show): a framed box, and a framed list when open.
ComboBox {
    id: control
    // A transparent style background turns the box's layer off; the frame below draws it.
    Material.background: "transparent"
    Rectangle {
        parent: control.background
        anchors.fill: parent
        color: control.enabled ? "#ffffff" : "#f1f3f4"
        border.color: "#b0bec5"
        radius: 3
        z: -1
    }
    Component.onCompleted: {
        popup.background.layer.enabled = false
        popup.background.border.color = "#90a4ae"
        popup.background.border.width = 1
    }
}
