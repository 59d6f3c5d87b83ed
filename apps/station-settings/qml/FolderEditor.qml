import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import App 1.0

// Edits the selected folder, or a new one after startNew().
Frame {
    id: editor

    property bool creating: false
    readonly property var folder: creating ? null : directories.selectedFolder
    readonly property string folderId: folder ? folder.id : ""
    readonly property bool isNetwork: typeBox.currentValue === FolderAlias.C_folderTypeNetwork
    readonly property bool editable: creating || directories.isSelectedFolderEditable
    property string message
    property bool messageIsError: false
    property bool testing: directories.testInProgress

    function startNew() {
        creating = true
        fill()
    }

    // Copies the folder (or blank values) into the fields.
    function fill() {
        typeBox.currentIndex = folder ? Math.max(0, typeBox.indexOfValue(folder.type))
                                      : Math.max(0, typeBox.indexOfValue(FolderAlias.C_folderTypeNetwork))
        aliasField.text = folder ? folder.aliasName : ""
        pathField.text = folder ? folder.path : ""
        addressField.text = folder ? folder.address : ""
        domainField.text = folder ? folder.domain : ""
        loginField.text = folder ? folder.identifier : ""
        passwordField.text = folder ? folder.password : ""
        enabledBox.checked = folder ? folder.isEnabled : true
        // Read here: a binding on the folder may not have followed the new one yet.
        var role = folder ? directories.getRoleOfFolder(folder.id) : FolderAlias.C_folderRoleUndefined
        var roles = folder ? folder.availableRolesModel(folder.id, role, directories.isSelectedFolderEditable)
                           : FolderAlias.availableRolesModel("", role, true)
        // Replaced only when it differs: a new model resets the box's shown text.
        if (JSON.stringify(roles) !== JSON.stringify(roleBox.model))
            roleBox.model = roles
        roleBox.currentIndex = Math.max(0, roleBox.indexOfValue(role))
        message = ""
        checkFields = false
    }

    // Set by the first Apply: from then on each field's problem shows beside it as it is typed.
    property bool checkFields: false
    readonly property string aliasProblem: checkFields ? problemOfAlias(aliasField.text) : ""
    readonly property string addressProblem: checkFields && isNetwork ? problemOfAddress(addressField.text) : ""
    readonly property string pathProblem: checkFields && isNetwork ? problemOfSharePath(pathField.text) : ""

    function problemOfAlias(text) {
        var alias = text.trim()
        if (alias.length === 0)
            //% "An alias is required."
            return qsTrId("StationSettings_Folders_alias_required")
        var folders = directories.folders
        for (var i = 0; i < folders.count; ++i) {
            var other = folders.get(i)
            if (other && other.aliasName === alias && (creating || other.id !== folderId))
                return qsTrId("Directories_Duplicate_alias")
        }
        return ""
    }

    // A host name or an IPv4 address, with an optional port.
    function problemOfAddress(text) {
        var address = text.trim()
        if (address.length === 0)
            //% "A server address is required for a network folder."
            return qsTrId("StationSettings_Folders_address_required")
        var match = /^([A-Za-z0-9](?:[A-Za-z0-9-]{0,61}[A-Za-z0-9])?(?:\.[A-Za-z0-9](?:[A-Za-z0-9-]{0,61}[A-Za-z0-9])?)*)(?::([0-9]{1,5}))?$/.exec(address)
        var valid = match !== null
        if (valid && /^[0-9.]+$/.test(match[1])) {
            var parts = match[1].split(".")
            valid = parts.length === 4 && parts.every(function(part) { return Number(part) <= 255 })
        }
        if (valid && match[2] !== undefined)
            valid = Number(match[2]) >= 1 && Number(match[2]) <= 65535
        //% "Give a server name or an IPv4 address, with an optional port from 1 to 65535 (192.168.1.10:445)."
        return valid ? "" : qsTrId("StationSettings_Folders_address_invalid")
    }

    // The share and an optional folder in it: names separated by "/", without "\\" or a drive.
    function problemOfSharePath(text) {
        var path = text.trim()
        //% "Give the share and, if needed, a folder in it, separated by / (results/line_b)."
        var invalid = qsTrId("StationSettings_Folders_share_path_invalid")
        if (path.length === 0)
            return invalid
        return /^[^\\/:*?"<>|]+(\/[^\\/:*?"<>|]+)*$/.test(path) ? "" : invalid
    }

    // Why the fields cannot be applied as they are; empty when they can.
    function fieldProblem() {
        checkFields = true
        return aliasProblem || addressProblem || pathProblem
    }

    function apply() {
        var problem = fieldProblem()
        if (problem.length > 0) {
            message = problem
            messageIsError = true
            window.showMessage(problem, true)
            return
        }
        var result = directories.setFolderAlias(creating ? "" : folderId, roleBox.currentValue, typeBox.currentValue,
                                                aliasField.text, pathField.text, domainField.text, addressField.text,
                                                loginField.text, passwordField.text, enabledBox.checked)
        if (result.length > 0) {
            message = result
            messageIsError = true
            window.showMessage(result, true)
            return
        }
        var alias = aliasField.text
        window.unsaved = true
        creating = false
        for (var i = 0; i < directories.folders.count; ++i) {
            if (directories.folders.get(i).aliasName === alias) {
                directories.selectFolder(i)
                break
            }
        }
        //% "Folder %1 applied; save to keep it."
        message = qsTrId("StationSettings_Folders_applied").arg(alias)
        messageIsError = false
    }

    onFolderChanged: fill()
    Connections {
        target: directories
        function onTestConnectionResult(success, message) {
            editor.message = message
            editor.messageIsError = !success
        }
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: 10

        Label {
            font.pixelSize: 16
            font.bold: true
            text: editor.creating ? qsTrId("StationSettings_Folders_new")
                                  : editor.folder ? editor.folder.aliasName
                                                  //% "Choose a folder in the list, or create a new one."
                                                  : qsTrId("StationSettings_Folders_choose")
        }

        GridLayout {
            columns: 2
            columnSpacing: 16
            rowSpacing: 8
            enabled: editor.creating || editor.folder !== null
            Layout.fillWidth: true

            Label {
                //% "Type"
                text: qsTrId("StationSettings_Folders_type")
            }
            TouchComboBox {
                id: typeBox
                objectName: "folderTypeBox"
                Layout.preferredWidth: 280
                model: FolderAlias.typesModel
                textRole: FolderAlias.C_modelKeyName
                valueRole: FolderAlias.C_modelKeyId
                enabled: editor.creating
            }
            Label {
                //% "Alias"
                text: qsTrId("StationSettings_Folders_alias")
            }
            TouchField {
                id: aliasField
                objectName: "folderAliasField"
                Layout.fillWidth: true
                enabled: editor.editable
            }
            Item { width: 1; height: 1; visible: aliasProblemText.visible }
            Label {
                id: aliasProblemText
                objectName: "aliasProblemLabel"
                text: editor.aliasProblem
                visible: text.length > 0
                color: "#b52b27"
                wrapMode: Text.Wrap
                Layout.fillWidth: true
            }
            Label {
                //% "Server address"
                text: qsTrId("StationSettings_Folders_address")
                visible: editor.isNetwork
            }
            TouchField {
                id: addressField
                objectName: "folderAddressField"
                Layout.fillWidth: true
                visible: editor.isNetwork
                enabled: editor.editable
                placeholderText: "192.168.1.10"
            }
            Item { width: 1; height: 1; visible: addressProblemText.visible }
            Label {
                id: addressProblemText
                objectName: "addressProblemLabel"
                text: editor.addressProblem
                visible: text.length > 0
                color: "#b52b27"
                wrapMode: Text.Wrap
                Layout.fillWidth: true
            }
            Label {
                //% "Path"
                text: qsTrId("StationSettings_Folders_path")
            }
            TouchField {
                id: pathField
                objectName: "folderPathField"
                Layout.fillWidth: true
                enabled: editor.editable
            }
            Item { width: 1; height: 1; visible: pathProblemText.visible }
            Label {
                id: pathProblemText
                objectName: "pathProblemLabel"
                text: editor.pathProblem
                visible: text.length > 0
                color: "#b52b27"
                wrapMode: Text.Wrap
                Layout.fillWidth: true
            }
            Label {
                //% "Domain"
                text: qsTrId("StationSettings_Folders_domain")
                visible: editor.isNetwork
            }
            TouchField {
                id: domainField
                objectName: "folderDomainField"
                Layout.fillWidth: true
                visible: editor.isNetwork
                enabled: editor.editable
            }
            Label {
                //% "Login"
                text: qsTrId("StationSettings_Folders_login")
                visible: editor.isNetwork
            }
            TouchField {
                id: loginField
                objectName: "folderLoginField"
                Layout.fillWidth: true
                visible: editor.isNetwork
                enabled: editor.editable
            }
            Label {
                //% "Password"
                text: qsTrId("StationSettings_Folders_password")
                visible: editor.isNetwork
            }
            TouchField {
                id: passwordField
                objectName: "folderPasswordField"
                Layout.fillWidth: true
                visible: editor.isNetwork
                enabled: editor.editable
                echoMode: TextInput.Password
            }
            Label {
                //% "Role"
                text: qsTrId("StationSettings_Folders_role")
            }
            TouchComboBox {
                id: roleBox
                objectName: "folderRoleBox"
                Layout.preferredWidth: 280
                textRole: FolderAlias.C_modelKeyName
                valueRole: FolderAlias.C_modelKeyId
            }
            Item { width: 1; height: 1 }
            CheckBox {
                id: enabledBox
                objectName: "folderEnabledBox"
                //% "Enabled"
                text: qsTrId("StationSettings_Folders_enabled")
                enabled: editor.editable
            }
        }

        RowLayout {
            spacing: 8
            enabled: editor.creating || editor.folder !== null
            TouchButton {
                objectName: "applyFolderButton"
                //% "Apply"
                text: qsTrId("StationSettings_Apply")
                highlighted: true
                onClicked: editor.apply()
            }
            TouchButton {
                objectName: "cancelFolderButton"
                //% "Cancel"
                text: qsTrId("StationSettings_Cancel")
                onClicked: {
                    editor.creating = false
                    editor.fill()
                }
            }
            TouchButton {
                objectName: "testFolderButton"
                //% "Test connection"
                text: qsTrId("StationSettings_Folders_test_connection")
                visible: editor.isNetwork
                enabled: !editor.testing && addressField.text.length > 0
                onClicked: {
                    //% "Testing the connection..."
                    editor.message = qsTrId("StationSettings_Folders_testing")
                    editor.messageIsError = false
                    directories.testFolderConnection(addressField.text, domainField.text, loginField.text,
                                                     passwordField.text, pathField.text)
                }
            }
            BusyIndicator {
                objectName: "testBusyIndicator"
                running: editor.testing
                visible: running
                Layout.preferredHeight: 32
                Layout.preferredWidth: 32
            }
        }

        Label {
            objectName: "folderEditorMessage"
            text: editor.message
            visible: text.length > 0
            wrapMode: Text.Wrap
            Layout.fillWidth: true
            color: editor.messageIsError ? "#b52b27" : "#2e7d32"
        }

        Item { Layout.fillHeight: true }
    }
}
