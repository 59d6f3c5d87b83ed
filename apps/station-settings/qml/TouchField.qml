import QtQuick 2.15
import QtQuick.Controls 2.15

// A text field a finger can hit: at least 48 px high whatever the style and font.
TextField {
    implicitHeight: Math.max(48, contentHeight + topPadding + bottomPadding)
}
