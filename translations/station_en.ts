<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_GB">
<context>
    <name></name>
    <message id="DZuConfiguration_Error__invalid_region__city">
        <source>Error: invalid region/city</source>
        <translation>Error: invalid region/city</translation>
    </message>
    <message id="DZuConfiguration_Error_changing_system_time_zone_">
        <source>Error changing the system time zone.</source>
        <translation>Error changing the system time zone.</translation>
    </message>
    <message id="DZuConfiguration_The_system_time_zone_has_been_successfully_changed_">
        <source>The system time zone has been successfully changed.</source>
        <translation>The system time zone has been successfully changed.</translation>
    </message>
    <message id="DZuConfiguration_distance_unit">
        <source>Distance unit</source>
        <translation>Distance unit</translation>
    </message>
    <message id="DZuConfiguration_temperature_unit">
        <source>Temperature unit</source>
        <translation>Temperature unit</translation>
    </message>
    <message id="DZuConfiguration_torque_unit">
        <source>Torque unit</source>
        <translation>Torque unit</translation>
    </message>
    <message id="DZuConfiguration_weight_unit">
        <source>Weight unit</source>
        <translation>Weight unit</translation>
    </message>
    <message id="Directories_Cannot_delete_from_share">
        <source>Cannot delete from the share: %1</source>
        <translation>Cannot delete from the share: %1</translation>
    </message>
    <message id="Directories_Cannot_read_from_share">
        <source>Cannot read from the share: %1</source>
        <translation>Cannot read from the share: %1</translation>
    </message>
    <message id="Directories_Cannot_write_to_share">
        <source>Cannot write to the share: %1</source>
        <translation>Cannot write to the share: %1</translation>
    </message>
    <message id="Directories_Connection_failed">
        <source>Connection failed: %1</source>
        <translation>Connection failed: %1</translation>
    </message>
    <message id="Directories_Connection_successful">
        <source>Connection successful</source>
        <translation>Connection successful</translation>
    </message>
    <message id="Directories_Connection_timeout">
        <source>Connection timed out</source>
        <translation>Connection timed out</translation>
    </message>
    <message id="Directories_Data_verification_failed">
        <source>Data verification failed: the file read back differs from the file written</source>
        <translation>Data verification failed: the file read back differs from the file written</translation>
    </message>
    <message id="Directories_Duplicate_alias">
        <source>This alias name is already used</source>
        <translation>This alias name is already used</translation>
    </message>
    <message id="Directories_ERROR__Failure_to_access_to_alias_folder____1_">
        <source>ERROR: Failure to access the alias folder: %1</source>
        <translation>ERROR: Failure to access the alias folder: %1</translation>
    </message>
    <message id="Directories_ERROR__Failure_to_create_the_instance_of_object____1_">
        <source>ERROR: Failure to create the folder object: %1</source>
        <translation>ERROR: Failure to create the folder object: %1</translation>
    </message>
    <message id="Directories_ERROR__Failure_to_find_the_alias_folder____1_">
        <source>ERROR: Failure to find the alias folder: %1</source>
        <translation>ERROR: Failure to find the alias folder: %1</translation>
    </message>
    <message id="Directories_ERROR__Folder_outside_its_storage____1_">
        <source>ERROR: The folder %1 would lie outside its storage: its path may not contain &quot;..&quot; nor start at the root, and a network folder&apos;s name may not contain &quot;/&quot; or &quot;\&quot;</source>
        <translation>ERROR: The folder %1 would lie outside its storage: its path may not contain &quot;..&quot; nor start at the root, and a network folder&apos;s name may not contain &quot;/&quot; or &quot;\&quot;</translation>
    </message>
    <message id="Directories_FATAL_ERROR__Failure_to_access_to_internal_memory_folder____1_">
        <source>FATAL ERROR: Failure to access the internal memory folder: %1</source>
        <translation>FATAL ERROR: Failure to access the internal memory folder: %1</translation>
    </message>
    <message id="Directories_FATAL_ERROR__Failure_to_create_internal_memory_folder____1_">
        <source>FATAL ERROR: Failure to create the internal memory folder: %1</source>
        <translation>FATAL ERROR: Failure to create the internal memory folder: %1</translation>
    </message>
    <message id="Directories_FATAL_ERROR__Failure_to_find_the_internal_memory_folder____1_">
        <source>FATAL ERROR: Failure to find the internal memory folder: %1</source>
        <translation>FATAL ERROR: Failure to find the internal memory folder: %1</translation>
    </message>
    <message id="Directories_Failed_to_create_test_folder">
        <source>Failed to create the test folder</source>
        <translation>Failed to create the test folder</translation>
    </message>
    <message id="Directories_Failure_to_find_this_alias_in_the_list">
        <source>This alias cannot be found in the list</source>
        <translation>This alias cannot be found in the list</translation>
    </message>
    <message id="Directories_Internal_error_test_folder_disappeared">
        <source>Internal error: the test folder disappeared</source>
        <translation>Internal error: the test folder disappeared</translation>
    </message>
    <message id="Directories_Mount_point_not_accessible">
        <source>The mount point is not accessible</source>
        <translation>The mount point is not accessible</translation>
    </message>
    <message id="Directories_Previous_test_still_cleaning_up">
        <source>The previous test is still cleaning up; try again in a moment</source>
        <translation>The previous test is still cleaning up; try again in a moment</translation>
    </message>
    <message id="Folder_Internal_drive">
        <source>Internal drive</source>
        <translation>Internal drive</translation>
    </message>
    <message id="Folder_Media">
        <source>Media</source>
        <translation>Media</translation>
    </message>
    <message id="Folder_Mounted_but_path_not_found__1">
        <source>The share is mounted but the path %1 was not found</source>
        <translation>The share is mounted but the path %1 was not found</translation>
    </message>
    <message id="Folder_Network_drive">
        <source>Network drive</source>
        <translation>Network drive</translation>
    </message>
    <message id="Folder_PDF_Results">
        <source>PDF results</source>
        <translation>PDF results</translation>
    </message>
    <message id="Folder_Raw_Results">
        <source>Raw results</source>
        <translation>Raw results</translation>
    </message>
    <message id="Folder_Removable_drive">
        <source>Removable drive</source>
        <translation>Removable drive</translation>
    </message>
    <message id="Folder_Scripts">
        <source>Scripts</source>
        <translation>Scripts</translation>
    </message>
    <message id="Folder_Sequences">
        <source>Sequences</source>
        <translation>Sequences</translation>
    </message>
    <message id="Folder_Templates">
        <source>Templates</source>
        <translation>Templates</translation>
    </message>
    <message id="Folder_Tool_Backups">
        <source>Tool backups</source>
        <translation>Tool backups</translation>
    </message>
    <message id="Folder_Unable_to_mount__1___2__Please_check_network_configuration">
        <source>Unable to mount %1 (%2). Please check the network configuration.</source>
        <translation>Unable to mount %1 (%2). Please check the network configuration.</translation>
    </message>
    <message id="StationSettings_Add">
        <source>Add</source>
        <translation>Add</translation>
    </message>
    <message id="StationSettings_Apply">
        <source>Apply</source>
        <translation>Apply</translation>
    </message>
    <message id="StationSettings_Cancel">
        <source>Cancel</source>
        <translation>Cancel</translation>
    </message>
    <message id="StationSettings_Change">
        <source>Change</source>
        <translation>Change</translation>
    </message>
    <message id="StationSettings_Close">
        <source>Close</source>
        <translation>Close</translation>
    </message>
    <message id="StationSettings_Confirm_close">
        <source>Close without saving? The changes made here are lost.</source>
        <translation>Close without saving? The changes made here are lost.</translation>
    </message>
    <message id="StationSettings_Confirm_close_accept">
        <source>Close without saving</source>
        <translation>Close without saving</translation>
    </message>
    <message id="StationSettings_Confirm_reload">
        <source>Read the settings again from the station? The changes not saved here are lost.</source>
        <translation>Read the settings again from the station? The changes not saved here are lost.</translation>
    </message>
    <message id="StationSettings_Confirm_reload_accept">
        <source>Reload and lose changes</source>
        <translation>Reload and lose changes</translation>
    </message>
    <message id="StationSettings_Conflict_overwrite">
        <source>Overwrite</source>
        <translation>Overwrite</translation>
    </message>
    <message id="StationSettings_Conflict_text">
        <source>Another program changed the settings document since this program read it; nothing was saved. Reload its settings (the changes made here are lost), or overwrite them with the settings shown here?</source>
        <translation>Another program changed the settings document since this program read it; nothing was saved. Reload its settings (the changes made here are lost), or overwrite them with the settings shown here?</translation>
    </message>
    <message id="StationSettings_Conflict_title">
        <source>Changed by another program</source>
        <translation>Changed by another program</translation>
    </message>
    <message id="StationSettings_Delete">
        <source>Delete</source>
        <translation>Delete</translation>
    </message>
    <message id="StationSettings_Document_confirm_defaults">
        <source>Move the damaged document aside and show the default settings? Nothing is written until you save.</source>
        <translation>Move the damaged document aside and show the default settings? Nothing is written until you save.</translation>
    </message>
    <message id="StationSettings_Document_defaults_title">
        <source>Start from defaults</source>
        <translation>Start from defaults</translation>
    </message>
    <message id="StationSettings_Document_empty">
        <source>The file is empty: it was most likely being written when the station stopped (a crash or a power cut).</source>
        <translation>The file is empty: it was most likely being written when the station stopped (a crash or a power cut).</translation>
    </message>
    <message id="StationSettings_Document_file">
        <source>File: %1</source>
        <translation>File: %1</translation>
    </message>
    <message id="StationSettings_Document_move_aside">
        <source>Move aside</source>
        <translation>Move aside</translation>
    </message>
    <message id="StationSettings_Document_move_failed">
        <source>The damaged document could not be moved aside: %1</source>
        <translation>The damaged document could not be moved aside: %1</translation>
    </message>
    <message id="StationSettings_Document_moved_aside">
        <source>The damaged document was moved to %1. The screens show default settings; Save writes a new document.</source>
        <translation>The damaged document was moved to %1. The screens show default settings; Save writes a new document.</translation>
    </message>
    <message id="StationSettings_Document_reason">
        <source>Problem: %1</source>
        <translation>Problem: %1</translation>
    </message>
    <message id="StationSettings_Document_reason_at">
        <source>Problem: %1, at line %2, column %3</source>
        <translation>Problem: %1, at line %2, column %3</translation>
    </message>
    <message id="StationSettings_Document_restore_newest">
        <source>Restore the newest version (marked): it is the document as it was before the last save.</source>
        <translation>Restore the newest version (marked): it is the document as it was before the last save.</translation>
    </message>
    <message id="StationSettings_Document_start_from_defaults">
        <source>Start from defaults...</source>
        <translation>Start from defaults...</translation>
    </message>
    <message id="StationSettings_Document_torn">
        <source>The file stops before the document is complete: it was most likely being written when the station stopped (a crash or a power cut).</source>
        <translation>The file stops before the document is complete: it was most likely being written when the station stopped (a crash or a power cut).</translation>
    </message>
    <message id="StationSettings_Document_unchanged">
        <source>Nothing was changed: the file stays as it is. The screens show default settings and Save is disabled until the document is restored or replaced.</source>
        <translation>Nothing was changed: the file stays as it is. The screens show default settings and Save is disabled until the document is restored or replaced.</translation>
    </message>
    <message id="StationSettings_Document_unusable_title">
        <source>The settings document cannot be used</source>
        <translation>The settings document cannot be used</translation>
    </message>
    <message id="StationSettings_Document_way_defaults">
        <source>Or start from the default settings: the damaged file is kept beside the document as %1.damaged-&lt;time&gt;, and the first save writes a new document.</source>
        <translation>Or start from the default settings: the damaged file is kept beside the document as %1.damaged-&lt;time&gt;, and the first save writes a new document.</translation>
    </message>
    <message id="StationSettings_Document_way_restore">
        <source>Restore a kept version</source>
        <translation>Restore a kept version</translation>
    </message>
    <message id="StationSettings_Folders_address">
        <source>Server address</source>
        <translation>Server address</translation>
    </message>
    <message id="StationSettings_Folders_address_invalid">
        <source>Give a server name or an IPv4 address, with an optional port from 1 to 65535 (192.168.1.10:445).</source>
        <translation>Give a server name or an IPv4 address, with an optional port from 1 to 65535 (192.168.1.10:445).</translation>
    </message>
    <message id="StationSettings_Folders_address_required">
        <source>A server address is required for a network folder.</source>
        <translation>A server address is required for a network folder.</translation>
    </message>
    <message id="StationSettings_Folders_alias">
        <source>Alias</source>
        <translation>Alias</translation>
    </message>
    <message id="StationSettings_Folders_alias_required">
        <source>An alias is required.</source>
        <translation>An alias is required.</translation>
    </message>
    <message id="StationSettings_Folders_applied">
        <source>Folder %1 applied; save to keep it.</source>
        <translation>Folder %1 applied; save to keep it.</translation>
    </message>
    <message id="StationSettings_Folders_available">
        <source>Available</source>
        <translation>Available</translation>
    </message>
    <message id="StationSettings_Folders_choose">
        <source>Choose a folder in the list, or create a new one.</source>
        <translation>Choose a folder in the list, or create a new one.</translation>
    </message>
    <message id="StationSettings_Folders_confirm_delete">
        <source>Delete the folder %1? Its role is left without a folder until another one takes it.</source>
        <translation>Delete the folder %1? Its role is left without a folder until another one takes it.</translation>
    </message>
    <message id="StationSettings_Folders_counters">
        <source>Network folders: %1 of %2 connected - removable: %3 of %4</source>
        <translation>Network folders: %1 of %2 connected - removable: %3 of %4</translation>
    </message>
    <message id="StationSettings_Folders_delete_title">
        <source>Delete a folder</source>
        <translation>Delete a folder</translation>
    </message>
    <message id="StationSettings_Folders_disabled">
        <source>Disabled</source>
        <translation>Disabled</translation>
    </message>
    <message id="StationSettings_Folders_domain">
        <source>Domain</source>
        <translation>Domain</translation>
    </message>
    <message id="StationSettings_Folders_enabled">
        <source>Enabled</source>
        <translation>Enabled</translation>
    </message>
    <message id="StationSettings_Folders_login">
        <source>Login</source>
        <translation>Login</translation>
    </message>
    <message id="StationSettings_Folders_new">
        <source>New folder</source>
        <translation>New folder</translation>
    </message>
    <message id="StationSettings_Folders_password">
        <source>Password</source>
        <translation>Password</translation>
    </message>
    <message id="StationSettings_Folders_path">
        <source>Path</source>
        <translation>Path</translation>
    </message>
    <message id="StationSettings_Folders_retry">
        <source>Retry connection</source>
        <translation>Retry connection</translation>
    </message>
    <message id="StationSettings_Folders_role">
        <source>Role</source>
        <translation>Role</translation>
    </message>
    <message id="StationSettings_Folders_share_path_invalid">
        <source>Give the share and, if needed, a folder in it, separated by / (results/line_b).</source>
        <translation>Give the share and, if needed, a folder in it, separated by / (results/line_b).</translation>
    </message>
    <message id="StationSettings_Folders_status_detecting">
        <source>Looking for the server %1</source>
        <translation>Looking for the server %1</translation>
    </message>
    <message id="StationSettings_Folders_status_mounted">
        <source>Connected</source>
        <translation>Connected</translation>
    </message>
    <message id="StationSettings_Folders_status_mounting">
        <source>Connecting, attempt %1 of %2</source>
        <translation>Connecting, attempt %1 of %2</translation>
    </message>
    <message id="StationSettings_Folders_status_retrying">
        <source>Server %1 answered, connecting</source>
        <translation>Server %1 answered, connecting</translation>
    </message>
    <message id="StationSettings_Folders_test_connection">
        <source>Test connection</source>
        <translation>Test connection</translation>
    </message>
    <message id="StationSettings_Folders_testing">
        <source>Testing the connection...</source>
        <translation>Testing the connection...</translation>
    </message>
    <message id="StationSettings_Folders_type">
        <source>Type</source>
        <translation>Type</translation>
    </message>
    <message id="StationSettings_Folders_unavailable">
        <source>Unavailable</source>
        <translation>Unavailable</translation>
    </message>
    <message id="StationSettings_General_force_auto_logout">
        <source>Log every user out automatically</source>
        <translation>Log every user out automatically</translation>
    </message>
    <message id="StationSettings_General_hide_production_timer">
        <source>Hide the production timer</source>
        <translation>Hide the production timer</translation>
    </message>
    <message id="StationSettings_General_inactivity_timeout">
        <source>Logout after inactivity (seconds)</source>
        <translation>Logout after inactivity (seconds)</translation>
    </message>
    <message id="StationSettings_General_operator">
        <source>Operator</source>
        <translation>Operator</translation>
    </message>
    <message id="StationSettings_General_operator_cannot_select_sequence">
        <source>The operator cannot choose the sequence</source>
        <translation>The operator cannot choose the sequence</translation>
    </message>
    <message id="StationSettings_General_production_line">
        <source>Production line</source>
        <translation>Production line</translation>
    </message>
    <message id="StationSettings_General_sequence_warning_threshold">
        <source>Sequence warning threshold (%)</source>
        <translation>Sequence warning threshold (%)</translation>
    </message>
    <message id="StationSettings_General_sound">
        <source>Sound</source>
        <translation>Sound</translation>
    </message>
    <message id="StationSettings_General_storage_warning_limit">
        <source>Storage warning when less than (%) is free</source>
        <translation>Storage warning when less than (%) is free</translation>
    </message>
    <message id="StationSettings_General_timeouts">
        <source>Timeouts and limits</source>
        <translation>Timeouts and limits</translation>
    </message>
    <message id="StationSettings_General_version">
        <source>Version %1</source>
        <translation>Version %1</translation>
    </message>
    <message id="StationSettings_General_volume">
        <source>Volume</source>
        <translation>Volume</translation>
    </message>
    <message id="StationSettings_General_workplace">
        <source>Workplace</source>
        <translation>Workplace</translation>
    </message>
    <message id="StationSettings_General_workplace_name">
        <source>Workplace name</source>
        <translation>Workplace name</translation>
    </message>
    <message id="StationSettings_Header_line_and_directory">
        <source>Line: %1 - station directory: %2</source>
        <translation>Line: %1 - station directory: %2</translation>
    </message>
    <message id="StationSettings_Header_preview">
        <source>preview: system settings are not applied to this computer</source>
        <translation>preview: system settings are not applied to this computer</translation>
    </message>
    <message id="StationSettings_History">
        <source>History</source>
        <translation>History</translation>
    </message>
    <message id="StationSettings_History_changed_keys">
        <source>It changed %1 key(s): %2</source>
        <translation>It changed %1 key(s): %2</translation>
    </message>
    <message id="StationSettings_History_confirm_restore">
        <source>Restore the version of %1? It is written over the settings document and read again; the document it replaces is kept (as a version, or beside it when damaged). Changes not saved here are lost.</source>
        <translation>Restore the version of %1? It is written over the settings document and read again; the document it replaces is kept (as a version, or beside it when damaged). Changes not saved here are lost.</translation>
    </message>
    <message id="StationSettings_History_empty">
        <source>No earlier version of the document is kept.</source>
        <translation>No earlier version of the document is kept.</translation>
    </message>
    <message id="StationSettings_History_explanation">
        <source>Before each save replaces the document, the document is kept here (newest first). Restoring a version writes it over the document and reads it again; the document it replaces is kept as a version too.</source>
        <translation>Before each save replaces the document, the document is kept here (newest first). Restoring a version writes it over the document and reads it again; the document it replaces is kept as a version too.</translation>
    </message>
    <message id="StationSettings_History_no_keys">
        <source>It changed no key (the same settings, written again)</source>
        <translation>It changed no key (the same settings, written again)</translation>
    </message>
    <message id="StationSettings_History_no_reason">
        <source>Replaced by a program that gave no reason</source>
        <translation>Replaced by a program that gave no reason</translation>
    </message>
    <message id="StationSettings_History_replaced_by">
        <source>Replaced by: %1</source>
        <translation>Replaced by: %1</translation>
    </message>
    <message id="StationSettings_History_restore">
        <source>Restore...</source>
        <translation>Restore...</translation>
    </message>
    <message id="StationSettings_History_restore_accept">
        <source>Restore</source>
        <translation>Restore</translation>
    </message>
    <message id="StationSettings_History_restore_failed">
        <source>The version could not be restored: %1</source>
        <translation>The version could not be restored: %1</translation>
    </message>
    <message id="StationSettings_History_restore_title">
        <source>Restore a version</source>
        <translation>Restore a version</translation>
    </message>
    <message id="StationSettings_History_restored">
        <source>The version of %1 was restored and read again.</source>
        <translation>The version of %1 was restored and read again.</translation>
    </message>
    <message id="StationSettings_History_size">
        <source>%1 bytes</source>
        <translation>%1 bytes</translation>
    </message>
    <message id="StationSettings_History_title">
        <source>Kept versions of the settings document</source>
        <translation>Kept versions of the settings document</translation>
    </message>
    <message id="StationSettings_Page_folders">
        <source>Folders</source>
        <translation>Folders</translation>
    </message>
    <message id="StationSettings_Page_general">
        <source>General</source>
        <translation>General</translation>
    </message>
    <message id="StationSettings_Page_regional">
        <source>Regional settings</source>
        <translation>Regional settings</translation>
    </message>
    <message id="StationSettings_Page_sequencer">
        <source>Sequencer</source>
        <translation>Sequencer</translation>
    </message>
    <message id="StationSettings_Page_sync">
        <source>Synchronisation</source>
        <translation>Synchronisation</translation>
    </message>
    <message id="StationSettings_Page_templates">
        <source>Templates and logo</source>
        <translation>Templates and logo</translation>
    </message>
    <message id="StationSettings_Picker_choose">
        <source>Choose</source>
        <translation>Choose</translation>
    </message>
    <message id="StationSettings_Picker_empty">
        <source>No folder and no matching file here</source>
        <translation>No folder and no matching file here</translation>
    </message>
    <message id="StationSettings_Picker_internal">
        <source>Internal storage</source>
        <translation>Internal storage</translation>
    </message>
    <message id="StationSettings_Picker_logo_title">
        <source>Choose the logo</source>
        <translation>Choose the logo</translation>
    </message>
    <message id="StationSettings_Picker_no_preview">
        <source>Choose an image to see it here</source>
        <translation>Choose an image to see it here</translation>
    </message>
    <message id="StationSettings_Picker_removable">
        <source>Removable medium</source>
        <translation>Removable medium</translation>
    </message>
    <message id="StationSettings_Picker_template_title">
        <source>Add a report template</source>
        <translation>Add a report template</translation>
    </message>
    <message id="StationSettings_Picker_up">
        <source>Up</source>
        <translation>Up</translation>
    </message>
    <message id="StationSettings_Regional_city">
        <source>City</source>
        <translation>City</translation>
    </message>
    <message id="StationSettings_Regional_custom_ntp">
        <source>Custom server</source>
        <translation>Custom server</translation>
    </message>
    <message id="StationSettings_Regional_custom_ntp_placeholder">
        <source>host name or address</source>
        <translation>host name or address</translation>
    </message>
    <message id="StationSettings_Regional_date_format">
        <source>Date format</source>
        <translation>Date format</translation>
    </message>
    <message id="StationSettings_Regional_display">
        <source>Display</source>
        <translation>Display</translation>
    </message>
    <message id="StationSettings_Regional_display_date">
        <source>Show the date</source>
        <translation>Show the date</translation>
    </message>
    <message id="StationSettings_Regional_display_seconds">
        <source>Show the seconds</source>
        <translation>Show the seconds</translation>
    </message>
    <message id="StationSettings_Regional_distance">
        <source>Distance</source>
        <translation>Distance</translation>
    </message>
    <message id="StationSettings_Regional_formats">
        <source>Formats</source>
        <translation>Formats</translation>
    </message>
    <message id="StationSettings_Regional_hour_format">
        <source>Hour format</source>
        <translation>Hour format</translation>
    </message>
    <message id="StationSettings_Regional_keyboard">
        <source>Keyboard</source>
        <translation>Keyboard</translation>
    </message>
    <message id="StationSettings_Regional_language">
        <source>Language</source>
        <translation>Language</translation>
    </message>
    <message id="StationSettings_Regional_language_keyboard">
        <source>Language and keyboard</source>
        <translation>Language and keyboard</translation>
    </message>
    <message id="StationSettings_Regional_region">
        <source>Region</source>
        <translation>Region</translation>
    </message>
    <message id="StationSettings_Regional_server">
        <source>Server</source>
        <translation>Server</translation>
    </message>
    <message id="StationSettings_Regional_temperature">
        <source>Temperature</source>
        <translation>Temperature</translation>
    </message>
    <message id="StationSettings_Regional_time_now">
        <source>Time now</source>
        <translation>Time now</translation>
    </message>
    <message id="StationSettings_Regional_time_server">
        <source>Time server</source>
        <translation>Time server</translation>
    </message>
    <message id="StationSettings_Regional_time_zone">
        <source>Time zone</source>
        <translation>Time zone</translation>
    </message>
    <message id="StationSettings_Regional_torque">
        <source>Torque</source>
        <translation>Torque</translation>
    </message>
    <message id="StationSettings_Regional_units">
        <source>Units</source>
        <translation>Units</translation>
    </message>
    <message id="StationSettings_Regional_use_default_ntp">
        <source>Use the default time server</source>
        <translation>Use the default time server</translation>
    </message>
    <message id="StationSettings_Regional_weight">
        <source>Weight</source>
        <translation>Weight</translation>
    </message>
    <message id="StationSettings_Reload">
        <source>Reload</source>
        <translation>Reload</translation>
    </message>
    <message id="StationSettings_Reloaded">
        <source>The settings were read again from the station.</source>
        <translation>The settings were read again from the station.</translation>
    </message>
    <message id="StationSettings_Save">
        <source>Save</source>
        <translation>Save</translation>
    </message>
    <message id="StationSettings_Save_failed">
        <source>The settings could not be saved: %1</source>
        <translation>The settings could not be saved: %1</translation>
    </message>
    <message id="StationSettings_Saved">
        <source>The settings were saved.</source>
        <translation>The settings were saved.</translation>
    </message>
    <message id="StationSettings_Sequencer_auto_launch">
        <source>Launch the sequence automatically</source>
        <translation>Launch the sequence automatically</translation>
    </message>
    <message id="StationSettings_Sequencer_auto_serial">
        <source>Serial number given automatically</source>
        <translation>Serial number given automatically</translation>
    </message>
    <message id="StationSettings_Sequencer_code">
        <source>Input code</source>
        <translation>Input code</translation>
    </message>
    <message id="StationSettings_Sequencer_code_taken">
        <source>Input code %1 already launches a sequence.</source>
        <translation>Input code %1 already launches a sequence.</translation>
    </message>
    <message id="StationSettings_Sequencer_io_launch">
        <source>Launch by input code</source>
        <translation>Launch by input code</translation>
    </message>
    <message id="StationSettings_Sequencer_options">
        <source>Options</source>
        <translation>Options</translation>
    </message>
    <message id="StationSettings_Sequencer_relations">
        <source>Sequences launched by input code</source>
        <translation>Sequences launched by input code</translation>
    </message>
    <message id="StationSettings_Sequencer_rework_comments">
        <source>Rework comments</source>
        <translation>Rework comments</translation>
    </message>
    <message id="StationSettings_Sequencer_script_data">
        <source>Script data</source>
        <translation>Script data</translation>
    </message>
    <message id="StationSettings_Sequencer_script_launch">
        <source>Launch by script</source>
        <translation>Launch by script</translation>
    </message>
    <message id="StationSettings_Sequencer_script_path">
        <source>Script (in the media folder)</source>
        <translation>Script (in the media folder)</translation>
    </message>
    <message id="StationSettings_Sequencer_sequence">
        <source>Sequence</source>
        <translation>Sequence</translation>
    </message>
    <message id="StationSettings_Sequencer_sequence_placeholder">
        <source>sequence name</source>
        <translation>sequence name</translation>
    </message>
    <message id="StationSettings_Sequencer_skip_comments">
        <source>Skip comments</source>
        <translation>Skip comments</translation>
    </message>
    <message id="StationSettings_Sequencer_status_output">
        <source>Status output</source>
        <translation>Status output</translation>
    </message>
    <message id="StationSettings_Sync_confirm_reset">
        <source>Reset the synchronisation database? The next pass compares and copies every mirrored file again.</source>
        <translation>Reset the synchronisation database? The next pass compares and copies every mirrored file again.</translation>
    </message>
    <message id="StationSettings_Sync_has_mirror">
        <source>At least one folder is mirrored to a network folder</source>
        <translation>At least one folder is mirrored to a network folder</translation>
    </message>
    <message id="StationSettings_Sync_idle">
        <source>Waiting for the next pass</source>
        <translation>Waiting for the next pass</translation>
    </message>
    <message id="StationSettings_Sync_mirrored">
        <source>Mirrored folders</source>
        <translation>Mirrored folders</translation>
    </message>
    <message id="StationSettings_Sync_no_mirror">
        <source>No folder is mirrored</source>
        <translation>No folder is mirrored</translation>
    </message>
    <message id="StationSettings_Sync_pause">
        <source>Pause</source>
        <translation>Pause</translation>
    </message>
    <message id="StationSettings_Sync_paused">
        <source>Paused</source>
        <translation>Paused</translation>
    </message>
    <message id="StationSettings_Sync_reset">
        <source>Reset</source>
        <translation>Reset</translation>
    </message>
    <message id="StationSettings_Sync_reset_button">
        <source>Reset the synchronisation database</source>
        <translation>Reset the synchronisation database</translation>
    </message>
    <message id="StationSettings_Sync_reset_done">
        <source>The synchronisation database was reset.</source>
        <translation>The synchronisation database was reset.</translation>
    </message>
    <message id="StationSettings_Sync_reset_explanation">
        <source>Forgets what was copied and copies every mirrored folder again. Files replaced on the network folder go to the trash first.</source>
        <translation>Forgets what was copied and copies every mirrored folder again. Files replaced on the network folder go to the trash first.</translation>
    </message>
    <message id="StationSettings_Sync_reset_failed">
        <source>The synchronisation database could not be reset.</source>
        <translation>The synchronisation database could not be reset.</translation>
    </message>
    <message id="StationSettings_Sync_resetting">
        <source>Resetting...</source>
        <translation>Resetting...</translation>
    </message>
    <message id="StationSettings_Sync_resume">
        <source>Resume</source>
        <translation>Resume</translation>
    </message>
    <message id="StationSettings_Sync_running">
        <source>Copying files</source>
        <translation>Copying files</translation>
    </message>
    <message id="StationSettings_Sync_state">
        <source>State</source>
        <translation>State</translation>
    </message>
    <message id="StationSettings_Sync_unavailable">
        <source>Not available on this station</source>
        <translation>Not available on this station</translation>
    </message>
    <message id="StationSettings_Templates_add_template">
        <source>Add a template...</source>
        <translation>Add a template...</translation>
    </message>
    <message id="StationSettings_Templates_address">
        <source>Address</source>
        <translation>Address</translation>
    </message>
    <message id="StationSettings_Templates_apply_parameters">
        <source>Apply to the reports</source>
        <translation>Apply to the reports</translation>
    </message>
    <message id="StationSettings_Templates_choose_logo">
        <source>Choose a logo...</source>
        <translation>Choose a logo...</translation>
    </message>
    <message id="StationSettings_Templates_company">
        <source>Company</source>
        <translation>Company</translation>
    </message>
    <message id="StationSettings_Templates_confirm_delete">
        <source>Delete the template %1 from the station? The file is removed at once.</source>
        <translation>Delete the template %1 from the station? The file is removed at once.</translation>
    </message>
    <message id="StationSettings_Templates_delete_title">
        <source>Delete a template</source>
        <translation>Delete a template</translation>
    </message>
    <message id="StationSettings_Templates_exists">
        <source>A template named %1 is already on the station: delete it first to replace it.</source>
        <translation>A template named %1 is already on the station: delete it first to replace it.</translation>
    </message>
    <message id="StationSettings_Templates_footer">
        <source>Report footer</source>
        <translation>Report footer</translation>
    </message>
    <message id="StationSettings_Templates_logo">
        <source>Logo file</source>
        <translation>Logo file</translation>
    </message>
    <message id="StationSettings_Templates_logo_exists">
        <source>A file named %1 is already in the media folder: choose it there, or rename the new one.</source>
        <translation>A file named %1 is already in the media folder: choose it there, or rename the new one.</translation>
    </message>
    <message id="StationSettings_Templates_no_logo">
        <source>No logo</source>
        <translation>No logo</translation>
    </message>
    <message id="StationSettings_Templates_none">
        <source>No template yet</source>
        <translation>No template yet</translation>
    </message>
    <message id="StationSettings_Templates_not_added">
        <source>The file %1 could not be added.</source>
        <translation>The file %1 could not be added.</translation>
    </message>
    <message id="StationSettings_Templates_templates">
        <source>Report templates</source>
        <translation>Report templates</translation>
    </message>
    <message id="StationSettings_Unsaved_changes">
        <source>Unsaved changes</source>
        <translation>Unsaved changes</translation>
    </message>
    <message id="StationSettings_Window_title">
        <source>Station settings</source>
        <translation>Station settings</translation>
    </message>
</context>
</TS>
