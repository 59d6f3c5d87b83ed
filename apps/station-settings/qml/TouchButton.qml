import QtQuick 2.15
import QtQuick.Controls 2.15

// A button drawn without the style's shadow layer (which a software-rendered panel cannot
// show): a plain rectangle, dark blue when highlighted, at least 48 px high.
Button {
    id: control
    implicitHeight: Math.max(48, implicitContentHeight + topPadding + bottomPadding)
    background: Rectangle {
        implicitWidth: 64
        implicitHeight: 36
        y: control.topInset
        height: control.height - control.topInset - control.bottomInset
        radius: 3
        color: !control.enabled ? "#eceff1"
             : control.highlighted ? (control.down ? "#0d47a1" : "#1565c0")
             : (control.down ? "#cfd8dc" : "#e3e8ec")
        border.color: control.highlighted && control.enabled ? "transparent" : "#b0bec5"
    }
}
