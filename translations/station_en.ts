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
</context>
</TS>
