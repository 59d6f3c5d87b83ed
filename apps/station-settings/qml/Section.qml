import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15

// A titled group of label/control rows in two columns.
GroupBox {
    id: section
    default property alias content: grid.data
    property alias columns: grid.columns
    Layout.fillWidth: true
    GridLayout {
        id: grid
        anchors.left: parent.left
        anchors.right: parent.right
        columns: 2
        columnSpacing: 16
        rowSpacing: 8
    }
}
