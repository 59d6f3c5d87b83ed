<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name></name>
    <message id="DZuConfiguration_Error__invalid_region__city">
        <source>Error: invalid region/city</source>
        <translation>Fehler: ungültige Region/Stadt</translation>
    </message>
    <message id="DZuConfiguration_Error_changing_system_time_zone_">
        <source>Error changing the system time zone.</source>
        <translation>Fehler beim Ändern der Systemzeitzone.</translation>
    </message>
    <message id="DZuConfiguration_The_system_time_zone_has_been_successfully_changed_">
        <source>The system time zone has been successfully changed.</source>
        <translation>Die Systemzeitzone wurde geändert.</translation>
    </message>
    <message id="DZuConfiguration_distance_unit">
        <source>Distance unit</source>
        <translation>Längeneinheit</translation>
    </message>
    <message id="DZuConfiguration_temperature_unit">
        <source>Temperature unit</source>
        <translation>Temperatureinheit</translation>
    </message>
    <message id="DZuConfiguration_torque_unit">
        <source>Torque unit</source>
        <translation>Drehmomenteinheit</translation>
    </message>
    <message id="DZuConfiguration_weight_unit">
        <source>Weight unit</source>
        <translation>Gewichtseinheit</translation>
    </message>
    <message id="Directories_Cannot_delete_from_share">
        <source>Cannot delete from the share: %1</source>
        <translation>Löschen auf der Freigabe nicht möglich: %1</translation>
    </message>
    <message id="Directories_Cannot_read_from_share">
        <source>Cannot read from the share: %1</source>
        <translation>Lesen von der Freigabe nicht möglich: %1</translation>
    </message>
    <message id="Directories_Cannot_write_to_share">
        <source>Cannot write to the share: %1</source>
        <translation>Schreiben auf die Freigabe nicht möglich: %1</translation>
    </message>
    <message id="Directories_Connection_failed">
        <source>Connection failed: %1</source>
        <translation>Verbindung fehlgeschlagen: %1</translation>
    </message>
    <message id="Directories_Connection_successful">
        <source>Connection successful</source>
        <translation>Verbindung hergestellt</translation>
    </message>
    <message id="Directories_Connection_timeout">
        <source>Connection timed out</source>
        <translation>Zeitüberschreitung der Verbindung</translation>
    </message>
    <message id="Directories_Data_verification_failed">
        <source>Data verification failed: the file read back differs from the file written</source>
        <translation>Datenprüfung fehlgeschlagen: Die zurückgelesene Datei weicht von der geschriebenen ab</translation>
    </message>
    <message id="Directories_Duplicate_alias">
        <source>This alias name is already used</source>
        <translation>Dieser Aliasname wird bereits verwendet</translation>
    </message>
    <message id="Directories_ERROR__Failure_to_access_to_alias_folder____1_">
        <source>ERROR: Failure to access the alias folder: %1</source>
        <translation>FEHLER: Kein Zugriff auf den Alias-Ordner: %1</translation>
    </message>
    <message id="Directories_ERROR__Failure_to_create_the_instance_of_object____1_">
        <source>ERROR: Failure to create the folder object: %1</source>
        <translation>FEHLER: Das Ordnerobjekt kann nicht erstellt werden: %1</translation>
    </message>
    <message id="Directories_ERROR__Failure_to_find_the_alias_folder____1_">
        <source>ERROR: Failure to find the alias folder: %1</source>
        <translation>FEHLER: Alias-Ordner nicht gefunden: %1</translation>
    </message>
    <message id="Directories_ERROR__Folder_outside_its_storage____1_">
        <source>ERROR: The folder %1 would lie outside its storage: its path may not contain ".." nor start at the root, and a network folder's name may not contain "/" or "\"</source>
        <translation>FEHLER: Der Ordner %1 läge außerhalb seines Speichers: Sein Pfad darf weder ".." enthalten noch im Wurzelverzeichnis beginnen, und der Name eines Netzwerkordners darf weder "/" noch "\" enthalten</translation>
    </message>
    <message id="Directories_FATAL_ERROR__Failure_to_access_to_internal_memory_folder____1_">
        <source>FATAL ERROR: Failure to access the internal memory folder: %1</source>
        <translation>SCHWERER FEHLER: Kein Zugriff auf den Ordner des internen Speichers: %1</translation>
    </message>
    <message id="Directories_FATAL_ERROR__Failure_to_create_internal_memory_folder____1_">
        <source>FATAL ERROR: Failure to create the internal memory folder: %1</source>
        <translation>SCHWERER FEHLER: Der Ordner des internen Speichers kann nicht erstellt werden: %1</translation>
    </message>
    <message id="Directories_FATAL_ERROR__Failure_to_find_the_internal_memory_folder____1_">
        <source>FATAL ERROR: Failure to find the internal memory folder: %1</source>
        <translation>SCHWERER FEHLER: Ordner des internen Speichers nicht gefunden: %1</translation>
    </message>
    <message id="Directories_Failed_to_create_test_folder">
        <source>Failed to create the test folder</source>
        <translation>Der Testordner konnte nicht erstellt werden</translation>
    </message>
    <message id="Directories_Failure_to_find_this_alias_in_the_list">
        <source>This alias cannot be found in the list</source>
        <translation>Dieser Alias ist nicht in der Liste</translation>
    </message>
    <message id="Directories_Internal_error_test_folder_disappeared">
        <source>Internal error: the test folder disappeared</source>
        <translation>Interner Fehler: Der Testordner ist verschwunden</translation>
    </message>
    <message id="Directories_Mount_point_not_accessible">
        <source>The mount point is not accessible</source>
        <translation>Der Einhängepunkt ist nicht erreichbar</translation>
    </message>
    <message id="Directories_Previous_test_still_cleaning_up">
        <source>The previous test is still cleaning up; try again in a moment</source>
        <translation>Der vorherige Test räumt noch auf; bitte gleich noch einmal versuchen</translation>
    </message>
    <message id="Folder_Internal_drive">
        <source>Internal drive</source>
        <translation>Interner Speicher</translation>
    </message>
    <message id="Folder_Media">
        <source>Media</source>
        <translation>Medien</translation>
    </message>
    <message id="Folder_Mounted_but_path_not_found__1">
        <source>The share is mounted but the path %1 was not found</source>
        <translation>Die Freigabe ist eingehängt, aber der Pfad %1 wurde nicht gefunden</translation>
    </message>
    <message id="Folder_Network_drive">
        <source>Network drive</source>
        <translation>Netzlaufwerk</translation>
    </message>
    <message id="Folder_PDF_Results">
        <source>PDF results</source>
        <translation>PDF-Ergebnisse</translation>
    </message>
    <message id="Folder_Raw_Results">
        <source>Raw results</source>
        <translation>Rohergebnisse</translation>
    </message>
    <message id="Folder_Removable_drive">
        <source>Removable drive</source>
        <translation>Wechseldatenträger</translation>
    </message>
    <message id="Folder_Scripts">
        <source>Scripts</source>
        <translation>Skripte</translation>
    </message>
    <message id="Folder_Sequences">
        <source>Sequences</source>
        <translation>Sequenzen</translation>
    </message>
    <message id="Folder_Templates">
        <source>Templates</source>
        <translation>Vorlagen</translation>
    </message>
    <message id="Folder_Tool_Backups">
        <source>Tool backups</source>
        <translation>Werkzeugsicherungen</translation>
    </message>
    <message id="Folder_Unable_to_mount__1___2__Please_check_network_configuration">
        <source>Unable to mount %1 (%2). Please check the network configuration.</source>
        <translation>%1 kann nicht eingehängt werden (%2). Bitte die Netzwerkkonfiguration prüfen.</translation>
    </message>
    <message id="StationSettings_Add">
        <source>Add</source>
        <translation>Hinzufügen</translation>
    </message>
    <message id="StationSettings_Apply">
        <source>Apply</source>
        <translation>Übernehmen</translation>
    </message>
    <message id="StationSettings_Cancel">
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message id="StationSettings_Change">
        <source>Change</source>
        <translation>Ändern</translation>
    </message>
    <message id="StationSettings_Close">
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message id="StationSettings_Confirm_close">
        <source>Close without saving? The changes made here are lost.</source>
        <translation>Ohne Speichern schließen? Die hier vorgenommenen Änderungen gehen verloren.</translation>
    </message>
    <message id="StationSettings_Confirm_close_accept">
        <source>Close without saving</source>
        <translation>Ohne Speichern schließen</translation>
    </message>
    <message id="StationSettings_Confirm_reload">
        <source>Read the settings again from the station? The changes not saved here are lost.</source>
        <translation>Die Einstellungen erneut von der Station lesen? Die hier nicht gespeicherten Änderungen gehen verloren.</translation>
    </message>
    <message id="StationSettings_Confirm_reload_accept">
        <source>Reload and lose changes</source>
        <translation>Neu laden, Änderungen verwerfen</translation>
    </message>
    <message id="StationSettings_Conflict_overwrite">
        <source>Overwrite</source>
        <translation>Überschreiben</translation>
    </message>
    <message id="StationSettings_Conflict_text">
        <source>Another program changed the settings document since this program read it; nothing was saved. Reload its settings (the changes made here are lost), or overwrite them with the settings shown here?</source>
        <translation>Ein anderes Programm hat das Einstellungsdokument geändert, seit dieses Programm es gelesen hat; es wurde nichts gespeichert. Dessen Einstellungen neu laden (die hier vorgenommenen Änderungen gehen verloren) oder sie mit den hier angezeigten Einstellungen überschreiben?</translation>
    </message>
    <message id="StationSettings_Conflict_title">
        <source>Changed by another program</source>
        <translation>Von einem anderen Programm geändert</translation>
    </message>
    <message id="StationSettings_Delete">
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
    <message id="StationSettings_Document_confirm_defaults">
        <source>Move the damaged document aside and show the default settings? Nothing is written until you save.</source>
        <translation>Das beschädigte Dokument beiseitelegen und die Standardeinstellungen anzeigen? Es wird nichts geschrieben, bis Sie speichern.</translation>
    </message>
    <message id="StationSettings_Document_defaults_title">
        <source>Start from defaults</source>
        <translation>Mit Standardeinstellungen beginnen</translation>
    </message>
    <message id="StationSettings_Document_empty">
        <source>The file is empty: it was most likely being written when the station stopped (a crash or a power cut).</source>
        <translation>Die Datei ist leer: Sie wurde höchstwahrscheinlich gerade geschrieben, als die Station anhielt (Absturz oder Stromausfall).</translation>
    </message>
    <message id="StationSettings_Document_file">
        <source>File: %1</source>
        <translation>Datei: %1</translation>
    </message>
    <message id="StationSettings_Document_move_aside">
        <source>Move aside</source>
        <translation>Beiseitelegen</translation>
    </message>
    <message id="StationSettings_Document_move_failed">
        <source>The damaged document could not be moved aside: %1</source>
        <translation>Das beschädigte Dokument konnte nicht beiseitegelegt werden: %1</translation>
    </message>
    <message id="StationSettings_Document_moved_aside">
        <source>The damaged document was moved to %1. The screens show default settings; Save writes a new document.</source>
        <translation>Das beschädigte Dokument wurde nach %1 verschoben. Die Seiten zeigen die Standardeinstellungen; Speichern schreibt ein neues Dokument.</translation>
    </message>
    <message id="StationSettings_Document_reason">
        <source>Problem: %1</source>
        <translation>Problem: %1</translation>
    </message>
    <message id="StationSettings_Document_reason_at">
        <source>Problem: %1, at line %2, column %3</source>
        <translation>Problem: %1, Zeile %2, Spalte %3</translation>
    </message>
    <message id="StationSettings_Document_restore_newest">
        <source>Restore the newest version (marked): it is the document as it was before the last save.</source>
        <translation>Die neueste Version (markiert) wiederherstellen: Sie ist das Dokument, wie es vor dem letzten Speichern war.</translation>
    </message>
    <message id="StationSettings_Document_start_from_defaults">
        <source>Start from defaults...</source>
        <translation>Mit Standardeinstellungen beginnen...</translation>
    </message>
    <message id="StationSettings_Document_torn">
        <source>The file stops before the document is complete: it was most likely being written when the station stopped (a crash or a power cut).</source>
        <translation>Die Datei endet, bevor das Dokument vollständig ist: Sie wurde höchstwahrscheinlich gerade geschrieben, als die Station anhielt (Absturz oder Stromausfall).</translation>
    </message>
    <message id="StationSettings_Document_unchanged">
        <source>Nothing was changed: the file stays as it is. The screens show default settings and Save is disabled until the document is restored or replaced.</source>
        <translation>Es wurde nichts geändert: Die Datei bleibt, wie sie ist. Die Seiten zeigen die Standardeinstellungen, und Speichern bleibt gesperrt, bis das Dokument wiederhergestellt oder ersetzt ist.</translation>
    </message>
    <message id="StationSettings_Document_unusable_title">
        <source>The settings document cannot be used</source>
        <translation>Das Einstellungsdokument ist nicht verwendbar</translation>
    </message>
    <message id="StationSettings_Document_way_defaults">
        <source>Or start from the default settings: the damaged file is kept beside the document as %1.damaged-&lt;time&gt;, and the first save writes a new document.</source>
        <translation>Oder mit den Standardeinstellungen beginnen: Die beschädigte Datei bleibt neben dem Dokument als %1.damaged-&lt;Zeit&gt; erhalten, und das erste Speichern schreibt ein neues Dokument.</translation>
    </message>
    <message id="StationSettings_Document_way_restore">
        <source>Restore a kept version</source>
        <translation>Eine gespeicherte Version wiederherstellen</translation>
    </message>
    <message id="StationSettings_Folders_address">
        <source>Server address</source>
        <translation>Serveradresse</translation>
    </message>
    <message id="StationSettings_Folders_address_invalid">
        <source>Give a server name or an IPv4 address, with an optional port from 1 to 65535 (192.168.1.10:445).</source>
        <translation>Einen Servernamen oder eine IPv4-Adresse angeben, optional mit einem Port von 1 bis 65535 (192.168.1.10:445).</translation>
    </message>
    <message id="StationSettings_Folders_address_required">
        <source>A server address is required for a network folder.</source>
        <translation>Für einen Netzwerkordner ist eine Serveradresse erforderlich.</translation>
    </message>
    <message id="StationSettings_Folders_alias">
        <source>Alias</source>
        <translation>Alias</translation>
    </message>
    <message id="StationSettings_Folders_alias_required">
        <source>An alias is required.</source>
        <translation>Ein Alias ist erforderlich.</translation>
    </message>
    <message id="StationSettings_Folders_applied">
        <source>Folder %1 applied; save to keep it.</source>
        <translation>Ordner %1 übernommen; zum Behalten speichern.</translation>
    </message>
    <message id="StationSettings_Folders_available">
        <source>Available</source>
        <translation>Verfügbar</translation>
    </message>
    <message id="StationSettings_Folders_choose">
        <source>Choose a folder in the list, or create a new one.</source>
        <translation>Einen Ordner in der Liste wählen oder einen neuen anlegen.</translation>
    </message>
    <message id="StationSettings_Folders_confirm_delete">
        <source>Delete the folder %1? Its role is left without a folder until another one takes it.</source>
        <translation>Den Ordner %1 löschen? Seine Rolle bleibt ohne Ordner, bis ein anderer sie übernimmt.</translation>
    </message>
    <message id="StationSettings_Folders_counters">
        <source>Network folders: %1 of %2 connected - removable: %3 of %4</source>
        <translation>Netzwerkordner: %1 von %2 verbunden - Wechseldatenträger: %3 von %4</translation>
    </message>
    <message id="StationSettings_Folders_delete_title">
        <source>Delete a folder</source>
        <translation>Ordner löschen</translation>
    </message>
    <message id="StationSettings_Folders_disabled">
        <source>Disabled</source>
        <translation>Deaktiviert</translation>
    </message>
    <message id="StationSettings_Folders_domain">
        <source>Domain</source>
        <translation>Domäne</translation>
    </message>
    <message id="StationSettings_Folders_enabled">
        <source>Enabled</source>
        <translation>Aktiviert</translation>
    </message>
    <message id="StationSettings_Folders_login">
        <source>Login</source>
        <translation>Benutzername</translation>
    </message>
    <message id="StationSettings_Folders_new">
        <source>New folder</source>
        <translation>Neuer Ordner</translation>
    </message>
    <message id="StationSettings_Folders_password">
        <source>Password</source>
        <translation>Passwort</translation>
    </message>
    <message id="StationSettings_Folders_path">
        <source>Path</source>
        <translation>Pfad</translation>
    </message>
    <message id="StationSettings_Folders_retry">
        <source>Retry connection</source>
        <translation>Verbindung erneut versuchen</translation>
    </message>
    <message id="StationSettings_Folders_role">
        <source>Role</source>
        <translation>Rolle</translation>
    </message>
    <message id="StationSettings_Folders_share_path_invalid">
        <source>Give the share and, if needed, a folder in it, separated by / (results/line_b).</source>
        <translation>Die Freigabe und bei Bedarf einen Ordner darin angeben, getrennt durch / (results/line_b).</translation>
    </message>
    <message id="StationSettings_Folders_status_detecting">
        <source>Looking for the server %1</source>
        <translation>Suche nach dem Server %1</translation>
    </message>
    <message id="StationSettings_Folders_status_mounted">
        <source>Connected</source>
        <translation>Verbunden</translation>
    </message>
    <message id="StationSettings_Folders_status_mounting">
        <source>Connecting, attempt %1 of %2</source>
        <translation>Verbindungsaufbau, Versuch %1 von %2</translation>
    </message>
    <message id="StationSettings_Folders_status_retrying">
        <source>Server %1 answered, connecting</source>
        <translation>Server %1 hat geantwortet, Verbindung wird hergestellt</translation>
    </message>
    <message id="StationSettings_Folders_test_connection">
        <source>Test connection</source>
        <translation>Verbindung testen</translation>
    </message>
    <message id="StationSettings_Folders_testing">
        <source>Testing the connection...</source>
        <translation>Verbindung wird getestet...</translation>
    </message>
    <message id="StationSettings_Folders_type">
        <source>Type</source>
        <translation>Typ</translation>
    </message>
    <message id="StationSettings_Folders_unavailable">
        <source>Unavailable</source>
        <translation>Nicht verfügbar</translation>
    </message>
    <message id="StationSettings_General_force_auto_logout">
        <source>Log every user out automatically</source>
        <translation>Alle Benutzer automatisch abmelden</translation>
    </message>
    <message id="StationSettings_General_hide_production_timer">
        <source>Hide the production timer</source>
        <translation>Produktionstimer ausblenden</translation>
    </message>
    <message id="StationSettings_General_inactivity_timeout">
        <source>Logout after inactivity (seconds)</source>
        <translation>Abmeldung nach Inaktivität (Sekunden)</translation>
    </message>
    <message id="StationSettings_General_operator">
        <source>Operator</source>
        <translation>Bediener</translation>
    </message>
    <message id="StationSettings_General_operator_cannot_select_sequence">
        <source>The operator cannot choose the sequence</source>
        <translation>Der Bediener kann die Sequenz nicht wählen</translation>
    </message>
    <message id="StationSettings_General_production_line">
        <source>Production line</source>
        <translation>Produktionslinie</translation>
    </message>
    <message id="StationSettings_General_sequence_warning_threshold">
        <source>Sequence warning threshold (%)</source>
        <translation>Warnschwelle der Sequenz (%)</translation>
    </message>
    <message id="StationSettings_General_sound">
        <source>Sound</source>
        <translation>Ton</translation>
    </message>
    <message id="StationSettings_General_storage_warning_limit">
        <source>Storage warning when less than (%) is free</source>
        <translation>Speicherwarnung, wenn weniger als (%) frei ist</translation>
    </message>
    <message id="StationSettings_General_timeouts">
        <source>Timeouts and limits</source>
        <translation>Zeitlimits und Grenzwerte</translation>
    </message>
    <message id="StationSettings_General_version">
        <source>Version %1</source>
        <translation>Version %1</translation>
    </message>
    <message id="StationSettings_General_volume">
        <source>Volume</source>
        <translation>Lautstärke</translation>
    </message>
    <message id="StationSettings_General_workplace">
        <source>Workplace</source>
        <translation>Arbeitsplatz</translation>
    </message>
    <message id="StationSettings_General_workplace_name">
        <source>Workplace name</source>
        <translation>Name des Arbeitsplatzes</translation>
    </message>
    <message id="StationSettings_Header_line_and_directory">
        <source>Line: %1 - station directory: %2</source>
        <translation>Linie: %1 - Stationsverzeichnis: %2</translation>
    </message>
    <message id="StationSettings_Header_preview">
        <source>preview: system settings are not applied to this computer</source>
        <translation>Vorschau: Systemeinstellungen werden auf diesem Computer nicht angewendet</translation>
    </message>
    <message id="StationSettings_History">
        <source>History</source>
        <translation>Verlauf</translation>
    </message>
    <message id="StationSettings_History_changed_keys">
        <source>It changed %1 key(s): %2</source>
        <translation>%1 Schlüssel geändert: %2</translation>
    </message>
    <message id="StationSettings_History_confirm_restore">
        <source>Restore the version of %1? It is written over the settings document and read again; the document it replaces is kept (as a version, or beside it when damaged). Changes not saved here are lost.</source>
        <translation>Die Version vom %1 wiederherstellen? Sie wird über das Einstellungsdokument geschrieben und neu gelesen; das ersetzte Dokument bleibt erhalten (als Version oder, wenn beschädigt, daneben). Hier nicht gespeicherte Änderungen gehen verloren.</translation>
    </message>
    <message id="StationSettings_History_empty">
        <source>No earlier version of the document is kept.</source>
        <translation>Es ist keine frühere Version des Dokuments gespeichert.</translation>
    </message>
    <message id="StationSettings_History_explanation">
        <source>Before each save replaces the document, the document is kept here (newest first). Restoring a version writes it over the document and reads it again; the document it replaces is kept as a version too.</source>
        <translation>Bevor ein Speichern das Dokument ersetzt, wird das Dokument hier aufbewahrt (neueste zuerst). Das Wiederherstellen einer Version schreibt sie über das Dokument und liest sie neu; das ersetzte Dokument wird ebenfalls als Version aufbewahrt.</translation>
    </message>
    <message id="StationSettings_History_no_keys">
        <source>It changed no key (the same settings, written again)</source>
        <translation>Kein Schlüssel geändert (dieselben Einstellungen, erneut geschrieben)</translation>
    </message>
    <message id="StationSettings_History_no_reason">
        <source>Replaced by a program that gave no reason</source>
        <translation>Von einem Programm ersetzt, das keinen Grund angab</translation>
    </message>
    <message id="StationSettings_History_replaced_by">
        <source>Replaced by: %1</source>
        <translation>Ersetzt durch: %1</translation>
    </message>
    <message id="StationSettings_History_restore">
        <source>Restore...</source>
        <translation>Wiederherstellen...</translation>
    </message>
    <message id="StationSettings_History_restore_accept">
        <source>Restore</source>
        <translation>Wiederherstellen</translation>
    </message>
    <message id="StationSettings_History_restore_failed">
        <source>The version could not be restored: %1</source>
        <translation>Die Version konnte nicht wiederhergestellt werden: %1</translation>
    </message>
    <message id="StationSettings_History_restore_title">
        <source>Restore a version</source>
        <translation>Version wiederherstellen</translation>
    </message>
    <message id="StationSettings_History_restored">
        <source>The version of %1 was restored and read again.</source>
        <translation>Die Version vom %1 wurde wiederhergestellt und neu gelesen.</translation>
    </message>
    <message id="StationSettings_History_size">
        <source>%1 bytes</source>
        <translation>%1 Byte</translation>
    </message>
    <message id="StationSettings_History_title">
        <source>Kept versions of the settings document</source>
        <translation>Gespeicherte Versionen des Einstellungsdokuments</translation>
    </message>
    <message id="StationSettings_Page_folders">
        <source>Folders</source>
        <translation>Ordner</translation>
    </message>
    <message id="StationSettings_Page_general">
        <source>General</source>
        <translation>Allgemein</translation>
    </message>
    <message id="StationSettings_Page_regional">
        <source>Regional settings</source>
        <translation>Regionaleinstellungen</translation>
    </message>
    <message id="StationSettings_Page_sequencer">
        <source>Sequencer</source>
        <translation>Sequenzer</translation>
    </message>
    <message id="StationSettings_Page_sync">
        <source>Synchronisation</source>
        <translation>Synchronisierung</translation>
    </message>
    <message id="StationSettings_Page_templates">
        <source>Templates and logo</source>
        <translation>Vorlagen und Logo</translation>
    </message>
    <message id="StationSettings_Picker_choose">
        <source>Choose</source>
        <translation>Auswählen</translation>
    </message>
    <message id="StationSettings_Picker_empty">
        <source>No folder and no matching file here</source>
        <translation>Kein Ordner und keine passende Datei hier</translation>
    </message>
    <message id="StationSettings_Picker_internal">
        <source>Internal storage</source>
        <translation>Interner Speicher</translation>
    </message>
    <message id="StationSettings_Picker_logo_title">
        <source>Choose the logo</source>
        <translation>Logo auswählen</translation>
    </message>
    <message id="StationSettings_Picker_no_preview">
        <source>Choose an image to see it here</source>
        <translation>Ein Bild wählen, um es hier zu sehen</translation>
    </message>
    <message id="StationSettings_Picker_removable">
        <source>Removable medium</source>
        <translation>Wechseldatenträger</translation>
    </message>
    <message id="StationSettings_Picker_template_title">
        <source>Add a report template</source>
        <translation>Berichtsvorlage hinzufügen</translation>
    </message>
    <message id="StationSettings_Picker_up">
        <source>Up</source>
        <translation>Nach oben</translation>
    </message>
    <message id="StationSettings_Regional_city">
        <source>City</source>
        <translation>Stadt</translation>
    </message>
    <message id="StationSettings_Regional_custom_ntp">
        <source>Custom server</source>
        <translation>Eigener Server</translation>
    </message>
    <message id="StationSettings_Regional_custom_ntp_placeholder">
        <source>host name or address</source>
        <translation>Hostname oder Adresse</translation>
    </message>
    <message id="StationSettings_Regional_date_format">
        <source>Date format</source>
        <translation>Datumsformat</translation>
    </message>
    <message id="StationSettings_Regional_display">
        <source>Display</source>
        <translation>Anzeige</translation>
    </message>
    <message id="StationSettings_Regional_display_date">
        <source>Show the date</source>
        <translation>Datum anzeigen</translation>
    </message>
    <message id="StationSettings_Regional_display_seconds">
        <source>Show the seconds</source>
        <translation>Sekunden anzeigen</translation>
    </message>
    <message id="StationSettings_Regional_distance">
        <source>Distance</source>
        <translation>Länge</translation>
    </message>
    <message id="StationSettings_Regional_formats">
        <source>Formats</source>
        <translation>Formate</translation>
    </message>
    <message id="StationSettings_Regional_hour_format">
        <source>Hour format</source>
        <translation>Zeitformat</translation>
    </message>
    <message id="StationSettings_Regional_keyboard">
        <source>Keyboard</source>
        <translation>Tastatur</translation>
    </message>
    <message id="StationSettings_Regional_language">
        <source>Language</source>
        <translation>Sprache</translation>
    </message>
    <message id="StationSettings_Regional_language_keyboard">
        <source>Language and keyboard</source>
        <translation>Sprache und Tastatur</translation>
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
        <translation>Temperatur</translation>
    </message>
    <message id="StationSettings_Regional_time_now">
        <source>Time now</source>
        <translation>Aktuelle Uhrzeit</translation>
    </message>
    <message id="StationSettings_Regional_time_server">
        <source>Time server</source>
        <translation>Zeitserver</translation>
    </message>
    <message id="StationSettings_Regional_time_zone">
        <source>Time zone</source>
        <translation>Zeitzone</translation>
    </message>
    <message id="StationSettings_Regional_torque">
        <source>Torque</source>
        <translation>Drehmoment</translation>
    </message>
    <message id="StationSettings_Regional_units">
        <source>Units</source>
        <translation>Einheiten</translation>
    </message>
    <message id="StationSettings_Regional_use_default_ntp">
        <source>Use the default time server</source>
        <translation>Standard-Zeitserver verwenden</translation>
    </message>
    <message id="StationSettings_Regional_weight">
        <source>Weight</source>
        <translation>Gewicht</translation>
    </message>
    <message id="StationSettings_Reload">
        <source>Reload</source>
        <translation>Neu laden</translation>
    </message>
    <message id="StationSettings_Reloaded">
        <source>The settings were read again from the station.</source>
        <translation>Die Einstellungen wurden erneut von der Station gelesen.</translation>
    </message>
    <message id="StationSettings_Save">
        <source>Save</source>
        <translation>Speichern</translation>
    </message>
    <message id="StationSettings_Save_failed">
        <source>The settings could not be saved: %1</source>
        <translation>Die Einstellungen konnten nicht gespeichert werden: %1</translation>
    </message>
    <message id="StationSettings_Saved">
        <source>The settings were saved.</source>
        <translation>Die Einstellungen wurden gespeichert.</translation>
    </message>
    <message id="StationSettings_Sequencer_auto_launch">
        <source>Launch the sequence automatically</source>
        <translation>Sequenz automatisch starten</translation>
    </message>
    <message id="StationSettings_Sequencer_auto_serial">
        <source>Serial number given automatically</source>
        <translation>Seriennummer automatisch vergeben</translation>
    </message>
    <message id="StationSettings_Sequencer_code">
        <source>Input code</source>
        <translation>Eingangscode</translation>
    </message>
    <message id="StationSettings_Sequencer_code_taken">
        <source>Input code %1 already launches a sequence.</source>
        <translation>Der Eingangscode %1 startet bereits eine Sequenz.</translation>
    </message>
    <message id="StationSettings_Sequencer_io_launch">
        <source>Launch by input code</source>
        <translation>Start per Eingangscode</translation>
    </message>
    <message id="StationSettings_Sequencer_options">
        <source>Options</source>
        <translation>Optionen</translation>
    </message>
    <message id="StationSettings_Sequencer_relations">
        <source>Sequences launched by input code</source>
        <translation>Per Eingangscode gestartete Sequenzen</translation>
    </message>
    <message id="StationSettings_Sequencer_rework_comments">
        <source>Rework comments</source>
        <translation>Nacharbeitskommentare</translation>
    </message>
    <message id="StationSettings_Sequencer_script_data">
        <source>Script data</source>
        <translation>Skriptdaten</translation>
    </message>
    <message id="StationSettings_Sequencer_script_launch">
        <source>Launch by script</source>
        <translation>Start per Skript</translation>
    </message>
    <message id="StationSettings_Sequencer_script_path">
        <source>Script (in the media folder)</source>
        <translation>Skript (im Medienordner)</translation>
    </message>
    <message id="StationSettings_Sequencer_sequence">
        <source>Sequence</source>
        <translation>Sequenz</translation>
    </message>
    <message id="StationSettings_Sequencer_sequence_placeholder">
        <source>sequence name</source>
        <translation>Sequenzname</translation>
    </message>
    <message id="StationSettings_Sequencer_skip_comments">
        <source>Skip comments</source>
        <translation>Kommentare zum Überspringen</translation>
    </message>
    <message id="StationSettings_Sequencer_status_output">
        <source>Status output</source>
        <translation>Statusausgang</translation>
    </message>
    <message id="StationSettings_Sync_confirm_reset">
        <source>Reset the synchronisation database? The next pass compares and copies every mirrored file again.</source>
        <translation>Die Synchronisierungsdatenbank zurücksetzen? Der nächste Durchlauf vergleicht und kopiert alle gespiegelten Dateien erneut.</translation>
    </message>
    <message id="StationSettings_Sync_has_mirror">
        <source>At least one folder is mirrored to a network folder</source>
        <translation>Mindestens ein Ordner wird auf einen Netzwerkordner gespiegelt</translation>
    </message>
    <message id="StationSettings_Sync_idle">
        <source>Waiting for the next pass</source>
        <translation>Warten auf den nächsten Durchlauf</translation>
    </message>
    <message id="StationSettings_Sync_mirrored">
        <source>Mirrored folders</source>
        <translation>Gespiegelte Ordner</translation>
    </message>
    <message id="StationSettings_Sync_no_mirror">
        <source>No folder is mirrored</source>
        <translation>Kein Ordner wird gespiegelt</translation>
    </message>
    <message id="StationSettings_Sync_pause">
        <source>Pause</source>
        <translation>Anhalten</translation>
    </message>
    <message id="StationSettings_Sync_paused">
        <source>Paused</source>
        <translation>Angehalten</translation>
    </message>
    <message id="StationSettings_Sync_reset">
        <source>Reset</source>
        <translation>Zurücksetzen</translation>
    </message>
    <message id="StationSettings_Sync_reset_button">
        <source>Reset the synchronisation database</source>
        <translation>Synchronisierungsdatenbank zurücksetzen</translation>
    </message>
    <message id="StationSettings_Sync_reset_done">
        <source>The synchronisation database was reset.</source>
        <translation>Die Synchronisierungsdatenbank wurde zurückgesetzt.</translation>
    </message>
    <message id="StationSettings_Sync_reset_explanation">
        <source>Forgets what was copied and copies every mirrored folder again. Files replaced on the network folder go to the trash first.</source>
        <translation>Vergisst, was kopiert wurde, und kopiert alle gespiegelten Ordner erneut. Auf dem Netzwerkordner ersetzte Dateien kommen zuerst in den Papierkorb.</translation>
    </message>
    <message id="StationSettings_Sync_reset_failed">
        <source>The synchronisation database could not be reset.</source>
        <translation>Die Synchronisierungsdatenbank konnte nicht zurückgesetzt werden.</translation>
    </message>
    <message id="StationSettings_Sync_resetting">
        <source>Resetting...</source>
        <translation>Wird zurückgesetzt...</translation>
    </message>
    <message id="StationSettings_Sync_resume">
        <source>Resume</source>
        <translation>Fortsetzen</translation>
    </message>
    <message id="StationSettings_Sync_running">
        <source>Copying files</source>
        <translation>Dateien werden kopiert</translation>
    </message>
    <message id="StationSettings_Sync_state">
        <source>State</source>
        <translation>Status</translation>
    </message>
    <message id="StationSettings_Sync_unavailable">
        <source>Not available on this station</source>
        <translation>Auf dieser Station nicht verfügbar</translation>
    </message>
    <message id="StationSettings_Templates_add_template">
        <source>Add a template...</source>
        <translation>Vorlage hinzufügen...</translation>
    </message>
    <message id="StationSettings_Templates_address">
        <source>Address</source>
        <translation>Adresse</translation>
    </message>
    <message id="StationSettings_Templates_apply_parameters">
        <source>Apply to the reports</source>
        <translation>Auf die Berichte anwenden</translation>
    </message>
    <message id="StationSettings_Templates_choose_logo">
        <source>Choose a logo...</source>
        <translation>Logo auswählen...</translation>
    </message>
    <message id="StationSettings_Templates_company">
        <source>Company</source>
        <translation>Firma</translation>
    </message>
    <message id="StationSettings_Templates_confirm_delete">
        <source>Delete the template %1 from the station? The file is removed at once.</source>
        <translation>Die Vorlage %1 von der Station löschen? Die Datei wird sofort entfernt.</translation>
    </message>
    <message id="StationSettings_Templates_delete_title">
        <source>Delete a template</source>
        <translation>Vorlage löschen</translation>
    </message>
    <message id="StationSettings_Templates_exists">
        <source>A template named %1 is already on the station: delete it first to replace it.</source>
        <translation>Auf der Station gibt es bereits eine Vorlage namens %1: Zum Ersetzen zuerst löschen.</translation>
    </message>
    <message id="StationSettings_Templates_footer">
        <source>Report footer</source>
        <translation>Berichtsfußzeile</translation>
    </message>
    <message id="StationSettings_Templates_logo">
        <source>Logo file</source>
        <translation>Logodatei</translation>
    </message>
    <message id="StationSettings_Templates_logo_exists">
        <source>A file named %1 is already in the media folder: choose it there, or rename the new one.</source>
        <translation>Im Medienordner gibt es bereits eine Datei namens %1: Sie dort auswählen oder die neue umbenennen.</translation>
    </message>
    <message id="StationSettings_Templates_no_logo">
        <source>No logo</source>
        <translation>Kein Logo</translation>
    </message>
    <message id="StationSettings_Templates_none">
        <source>No template yet</source>
        <translation>Noch keine Vorlage</translation>
    </message>
    <message id="StationSettings_Templates_not_added">
        <source>The file %1 could not be added.</source>
        <translation>Die Datei %1 konnte nicht hinzugefügt werden.</translation>
    </message>
    <message id="StationSettings_Templates_templates">
        <source>Report templates</source>
        <translation>Berichtsvorlagen</translation>
    </message>
    <message id="StationSettings_Unsaved_changes">
        <source>Unsaved changes</source>
        <translation>Nicht gespeicherte Änderungen</translation>
    </message>
    <message id="StationSettings_Window_title">
        <source>Station settings</source>
        <translation>Stationseinstellungen</translation>
    </message>
</context>
</TS>
