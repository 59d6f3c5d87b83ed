<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="it_IT">
<context>
    <name></name>
    <message id="DZuConfiguration_Error__invalid_region__city">
        <source>Error: invalid region/city</source>
        <translation>Errore: regione/città non valida</translation>
    </message>
    <message id="DZuConfiguration_Error_changing_system_time_zone_">
        <source>Error changing the system time zone.</source>
        <translation>Errore durante la modifica del fuso orario di sistema.</translation>
    </message>
    <message id="DZuConfiguration_The_system_time_zone_has_been_successfully_changed_">
        <source>The system time zone has been successfully changed.</source>
        <translation>Il fuso orario di sistema è stato modificato.</translation>
    </message>
    <message id="DZuConfiguration_distance_unit">
        <source>Distance unit</source>
        <translation>Unità di distanza</translation>
    </message>
    <message id="DZuConfiguration_temperature_unit">
        <source>Temperature unit</source>
        <translation>Unità di temperatura</translation>
    </message>
    <message id="DZuConfiguration_torque_unit">
        <source>Torque unit</source>
        <translation>Unità di coppia</translation>
    </message>
    <message id="DZuConfiguration_weight_unit">
        <source>Weight unit</source>
        <translation>Unità di peso</translation>
    </message>
    <message id="Directories_Cannot_delete_from_share">
        <source>Cannot delete from the share: %1</source>
        <translation>Impossibile eliminare dalla condivisione: %1</translation>
    </message>
    <message id="Directories_Cannot_read_from_share">
        <source>Cannot read from the share: %1</source>
        <translation>Impossibile leggere dalla condivisione: %1</translation>
    </message>
    <message id="Directories_Cannot_write_to_share">
        <source>Cannot write to the share: %1</source>
        <translation>Impossibile scrivere sulla condivisione: %1</translation>
    </message>
    <message id="Directories_Connection_failed">
        <source>Connection failed: %1</source>
        <translation>Connessione non riuscita: %1</translation>
    </message>
    <message id="Directories_Connection_successful">
        <source>Connection successful</source>
        <translation>Connessione riuscita</translation>
    </message>
    <message id="Directories_Connection_timeout">
        <source>Connection timed out</source>
        <translation>Timeout della connessione</translation>
    </message>
    <message id="Directories_Data_verification_failed">
        <source>Data verification failed: the file read back differs from the file written</source>
        <translation>Verifica dei dati non riuscita: il file riletto è diverso dal file scritto</translation>
    </message>
    <message id="Directories_Duplicate_alias">
        <source>This alias name is already used</source>
        <translation>Questo nome alias è già in uso</translation>
    </message>
    <message id="Directories_ERROR__Failure_to_access_to_alias_folder____1_">
        <source>ERROR: Failure to access the alias folder: %1</source>
        <translation>ERRORE: impossibile accedere alla cartella dell'alias: %1</translation>
    </message>
    <message id="Directories_ERROR__Failure_to_create_the_instance_of_object____1_">
        <source>ERROR: Failure to create the folder object: %1</source>
        <translation>ERRORE: impossibile creare l'oggetto cartella: %1</translation>
    </message>
    <message id="Directories_ERROR__Failure_to_find_the_alias_folder____1_">
        <source>ERROR: Failure to find the alias folder: %1</source>
        <translation>ERRORE: cartella dell'alias non trovata: %1</translation>
    </message>
    <message id="Directories_ERROR__Folder_outside_its_storage____1_">
        <source>ERROR: The folder %1 would lie outside its storage: its path may not contain ".." nor start at the root, and a network folder's name may not contain "/" or "\"</source>
        <translation>ERRORE: la cartella %1 sarebbe fuori dalla sua memoria: il suo percorso non può contenere ".." né iniziare dalla radice, e il nome di una cartella di rete non può contenere "/" o "\"</translation>
    </message>
    <message id="Directories_FATAL_ERROR__Failure_to_access_to_internal_memory_folder____1_">
        <source>FATAL ERROR: Failure to access the internal memory folder: %1</source>
        <translation>ERRORE FATALE: impossibile accedere alla cartella della memoria interna: %1</translation>
    </message>
    <message id="Directories_FATAL_ERROR__Failure_to_create_internal_memory_folder____1_">
        <source>FATAL ERROR: Failure to create the internal memory folder: %1</source>
        <translation>ERRORE FATALE: impossibile creare la cartella della memoria interna: %1</translation>
    </message>
    <message id="Directories_FATAL_ERROR__Failure_to_find_the_internal_memory_folder____1_">
        <source>FATAL ERROR: Failure to find the internal memory folder: %1</source>
        <translation>ERRORE FATALE: cartella della memoria interna non trovata: %1</translation>
    </message>
    <message id="Directories_Failed_to_create_test_folder">
        <source>Failed to create the test folder</source>
        <translation>Impossibile creare la cartella di prova</translation>
    </message>
    <message id="Directories_Failure_to_find_this_alias_in_the_list">
        <source>This alias cannot be found in the list</source>
        <translation>Questo alias non è presente nell'elenco</translation>
    </message>
    <message id="Directories_Internal_error_test_folder_disappeared">
        <source>Internal error: the test folder disappeared</source>
        <translation>Errore interno: la cartella di prova è scomparsa</translation>
    </message>
    <message id="Directories_Mount_point_not_accessible">
        <source>The mount point is not accessible</source>
        <translation>Il punto di montaggio non è accessibile</translation>
    </message>
    <message id="Directories_Previous_test_still_cleaning_up">
        <source>The previous test is still cleaning up; try again in a moment</source>
        <translation>Il test precedente sta ancora ripulendo; riprovare tra un momento</translation>
    </message>
    <message id="Folder_Internal_drive">
        <source>Internal drive</source>
        <translation>Unità interna</translation>
    </message>
    <message id="Folder_Media">
        <source>Media</source>
        <translation>Media</translation>
    </message>
    <message id="Folder_Mounted_but_path_not_found__1">
        <source>The share is mounted but the path %1 was not found</source>
        <translation>La condivisione è montata ma il percorso %1 non è stato trovato</translation>
    </message>
    <message id="Folder_Network_drive">
        <source>Network drive</source>
        <translation>Unità di rete</translation>
    </message>
    <message id="Folder_PDF_Results">
        <source>PDF results</source>
        <translation>Risultati PDF</translation>
    </message>
    <message id="Folder_Raw_Results">
        <source>Raw results</source>
        <translation>Risultati grezzi</translation>
    </message>
    <message id="Folder_Removable_drive">
        <source>Removable drive</source>
        <translation>Unità rimovibile</translation>
    </message>
    <message id="Folder_Scripts">
        <source>Scripts</source>
        <translation>Script</translation>
    </message>
    <message id="Folder_Sequences">
        <source>Sequences</source>
        <translation>Sequenze</translation>
    </message>
    <message id="Folder_Templates">
        <source>Templates</source>
        <translation>Modelli</translation>
    </message>
    <message id="Folder_Tool_Backups">
        <source>Tool backups</source>
        <translation>Backup degli utensili</translation>
    </message>
    <message id="Folder_Unable_to_mount__1___2__Please_check_network_configuration">
        <source>Unable to mount %1 (%2). Please check the network configuration.</source>
        <translation>Impossibile montare %1 (%2). Verificare la configurazione di rete.</translation>
    </message>
    <message id="StationSettings_Add">
        <source>Add</source>
        <translation>Aggiungi</translation>
    </message>
    <message id="StationSettings_Apply">
        <source>Apply</source>
        <translation>Applica</translation>
    </message>
    <message id="StationSettings_Cancel">
        <source>Cancel</source>
        <translation>Annulla</translation>
    </message>
    <message id="StationSettings_Change">
        <source>Change</source>
        <translation>Modifica</translation>
    </message>
    <message id="StationSettings_Close">
        <source>Close</source>
        <translation>Chiudi</translation>
    </message>
    <message id="StationSettings_Confirm_close">
        <source>Close without saving? The changes made here are lost.</source>
        <translation>Chiudere senza salvare? Le modifiche fatte qui andranno perse.</translation>
    </message>
    <message id="StationSettings_Confirm_close_accept">
        <source>Close without saving</source>
        <translation>Chiudi senza salvare</translation>
    </message>
    <message id="StationSettings_Confirm_reload">
        <source>Read the settings again from the station? The changes not saved here are lost.</source>
        <translation>Rileggere le impostazioni dalla stazione? Le modifiche non salvate qui andranno perse.</translation>
    </message>
    <message id="StationSettings_Confirm_reload_accept">
        <source>Reload and lose changes</source>
        <translation>Ricarica e perdi le modifiche</translation>
    </message>
    <message id="StationSettings_Conflict_overwrite">
        <source>Overwrite</source>
        <translation>Sovrascrivi</translation>
    </message>
    <message id="StationSettings_Conflict_text">
        <source>Another program changed the settings document since this program read it; nothing was saved. Reload its settings (the changes made here are lost), or overwrite them with the settings shown here?</source>
        <translation>Un altro programma ha modificato il documento delle impostazioni dopo che questo programma lo ha letto; non è stato salvato nulla. Ricaricare le sue impostazioni (le modifiche fatte qui vanno perse) o sovrascriverle con le impostazioni mostrate qui?</translation>
    </message>
    <message id="StationSettings_Conflict_title">
        <source>Changed by another program</source>
        <translation>Modificato da un altro programma</translation>
    </message>
    <message id="StationSettings_Delete">
        <source>Delete</source>
        <translation>Elimina</translation>
    </message>
    <message id="StationSettings_Document_confirm_defaults">
        <source>Move the damaged document aside and show the default settings? Nothing is written until you save.</source>
        <translation>Mettere da parte il documento danneggiato e mostrare le impostazioni predefinite? Non viene scritto nulla finché non si salva.</translation>
    </message>
    <message id="StationSettings_Document_defaults_title">
        <source>Start from defaults</source>
        <translation>Ripartire dalle impostazioni predefinite</translation>
    </message>
    <message id="StationSettings_Document_empty">
        <source>The file is empty: it was most likely being written when the station stopped (a crash or a power cut).</source>
        <translation>Il file è vuoto: molto probabilmente era in scrittura quando la stazione si è fermata (un arresto anomalo o un'interruzione di corrente).</translation>
    </message>
    <message id="StationSettings_Document_file">
        <source>File: %1</source>
        <translation>File: %1</translation>
    </message>
    <message id="StationSettings_Document_move_aside">
        <source>Move aside</source>
        <translation>Metti da parte</translation>
    </message>
    <message id="StationSettings_Document_move_failed">
        <source>The damaged document could not be moved aside: %1</source>
        <translation>Non è stato possibile mettere da parte il documento danneggiato: %1</translation>
    </message>
    <message id="StationSettings_Document_moved_aside">
        <source>The damaged document was moved to %1. The screens show default settings; Save writes a new document.</source>
        <translation>Il documento danneggiato è stato spostato in %1. Le schermate mostrano le impostazioni predefinite; Salva scrive un nuovo documento.</translation>
    </message>
    <message id="StationSettings_Document_reason">
        <source>Problem: %1</source>
        <translation>Problema: %1</translation>
    </message>
    <message id="StationSettings_Document_reason_at">
        <source>Problem: %1, at line %2, column %3</source>
        <translation>Problema: %1, alla riga %2, colonna %3</translation>
    </message>
    <message id="StationSettings_Document_restore_newest">
        <source>Restore the newest version (marked): it is the document as it was before the last save.</source>
        <translation>Ripristinare la versione più recente (contrassegnata): è il documento com'era prima dell'ultimo salvataggio.</translation>
    </message>
    <message id="StationSettings_Document_start_from_defaults">
        <source>Start from defaults...</source>
        <translation>Ripartire dalle impostazioni predefinite...</translation>
    </message>
    <message id="StationSettings_Document_torn">
        <source>The file stops before the document is complete: it was most likely being written when the station stopped (a crash or a power cut).</source>
        <translation>Il file si interrompe prima che il documento sia completo: molto probabilmente era in scrittura quando la stazione si è fermata (un arresto anomalo o un'interruzione di corrente).</translation>
    </message>
    <message id="StationSettings_Document_unchanged">
        <source>Nothing was changed: the file stays as it is. The screens show default settings and Save is disabled until the document is restored or replaced.</source>
        <translation>Non è stato modificato nulla: il file resta com'è. Le schermate mostrano le impostazioni predefinite e Salva è disattivato finché il documento non viene ripristinato o sostituito.</translation>
    </message>
    <message id="StationSettings_Document_unusable_title">
        <source>The settings document cannot be used</source>
        <translation>Il documento delle impostazioni non è utilizzabile</translation>
    </message>
    <message id="StationSettings_Document_way_defaults">
        <source>Or start from the default settings: the damaged file is kept beside the document as %1.damaged-&lt;time&gt;, and the first save writes a new document.</source>
        <translation>Oppure ripartire dalle impostazioni predefinite: il file danneggiato viene conservato accanto al documento come %1.damaged-&lt;ora&gt; e il primo salvataggio scrive un nuovo documento.</translation>
    </message>
    <message id="StationSettings_Document_way_restore">
        <source>Restore a kept version</source>
        <translation>Ripristina una versione conservata</translation>
    </message>
    <message id="StationSettings_Folders_address">
        <source>Server address</source>
        <translation>Indirizzo del server</translation>
    </message>
    <message id="StationSettings_Folders_address_invalid">
        <source>Give a server name or an IPv4 address, with an optional port from 1 to 65535 (192.168.1.10:445).</source>
        <translation>Indicare un nome di server o un indirizzo IPv4, con una porta facoltativa da 1 a 65535 (192.168.1.10:445).</translation>
    </message>
    <message id="StationSettings_Folders_address_required">
        <source>A server address is required for a network folder.</source>
        <translation>Per una cartella di rete è obbligatorio un indirizzo del server.</translation>
    </message>
    <message id="StationSettings_Folders_alias">
        <source>Alias</source>
        <translation>Alias</translation>
    </message>
    <message id="StationSettings_Folders_alias_required">
        <source>An alias is required.</source>
        <translation>L'alias è obbligatorio.</translation>
    </message>
    <message id="StationSettings_Folders_applied">
        <source>Folder %1 applied; save to keep it.</source>
        <translation>Cartella %1 applicata; salvare per mantenerla.</translation>
    </message>
    <message id="StationSettings_Folders_available">
        <source>Available</source>
        <translation>Disponibile</translation>
    </message>
    <message id="StationSettings_Folders_choose">
        <source>Choose a folder in the list, or create a new one.</source>
        <translation>Scegliere una cartella nell'elenco o crearne una nuova.</translation>
    </message>
    <message id="StationSettings_Folders_confirm_delete">
        <source>Delete the folder %1? Its role is left without a folder until another one takes it.</source>
        <translation>Eliminare la cartella %1? Il suo ruolo resta senza cartella finché un'altra non lo assume.</translation>
    </message>
    <message id="StationSettings_Folders_counters">
        <source>Network folders: %1 of %2 connected - removable: %3 of %4</source>
        <translation>Cartelle di rete: %1 di %2 connesse - rimovibili: %3 di %4</translation>
    </message>
    <message id="StationSettings_Folders_delete_title">
        <source>Delete a folder</source>
        <translation>Elimina una cartella</translation>
    </message>
    <message id="StationSettings_Folders_disabled">
        <source>Disabled</source>
        <translation>Disattivata</translation>
    </message>
    <message id="StationSettings_Folders_domain">
        <source>Domain</source>
        <translation>Dominio</translation>
    </message>
    <message id="StationSettings_Folders_enabled">
        <source>Enabled</source>
        <translation>Attivata</translation>
    </message>
    <message id="StationSettings_Folders_login">
        <source>Login</source>
        <translation>Nome utente</translation>
    </message>
    <message id="StationSettings_Folders_new">
        <source>New folder</source>
        <translation>Nuova cartella</translation>
    </message>
    <message id="StationSettings_Folders_password">
        <source>Password</source>
        <translation>Password</translation>
    </message>
    <message id="StationSettings_Folders_path">
        <source>Path</source>
        <translation>Percorso</translation>
    </message>
    <message id="StationSettings_Folders_retry">
        <source>Retry connection</source>
        <translation>Riprova la connessione</translation>
    </message>
    <message id="StationSettings_Folders_role">
        <source>Role</source>
        <translation>Ruolo</translation>
    </message>
    <message id="StationSettings_Folders_share_path_invalid">
        <source>Give the share and, if needed, a folder in it, separated by / (results/line_b).</source>
        <translation>Indicare la condivisione e, se serve, una cartella al suo interno, separate da / (results/line_b).</translation>
    </message>
    <message id="StationSettings_Folders_status_detecting">
        <source>Looking for the server %1</source>
        <translation>Ricerca del server %1</translation>
    </message>
    <message id="StationSettings_Folders_status_mounted">
        <source>Connected</source>
        <translation>Connessa</translation>
    </message>
    <message id="StationSettings_Folders_status_mounting">
        <source>Connecting, attempt %1 of %2</source>
        <translation>Connessione, tentativo %1 di %2</translation>
    </message>
    <message id="StationSettings_Folders_status_retrying">
        <source>Server %1 answered, connecting</source>
        <translation>Il server %1 ha risposto, connessione in corso</translation>
    </message>
    <message id="StationSettings_Folders_test_connection">
        <source>Test connection</source>
        <translation>Prova la connessione</translation>
    </message>
    <message id="StationSettings_Folders_testing">
        <source>Testing the connection...</source>
        <translation>Prova della connessione...</translation>
    </message>
    <message id="StationSettings_Folders_type">
        <source>Type</source>
        <translation>Tipo</translation>
    </message>
    <message id="StationSettings_Folders_unavailable">
        <source>Unavailable</source>
        <translation>Non disponibile</translation>
    </message>
    <message id="StationSettings_General_force_auto_logout">
        <source>Log every user out automatically</source>
        <translation>Disconnetti automaticamente tutti gli utenti</translation>
    </message>
    <message id="StationSettings_General_hide_production_timer">
        <source>Hide the production timer</source>
        <translation>Nascondi il timer di produzione</translation>
    </message>
    <message id="StationSettings_General_inactivity_timeout">
        <source>Logout after inactivity (seconds)</source>
        <translation>Disconnessione dopo inattività (secondi)</translation>
    </message>
    <message id="StationSettings_General_operator">
        <source>Operator</source>
        <translation>Operatore</translation>
    </message>
    <message id="StationSettings_General_operator_cannot_select_sequence">
        <source>The operator cannot choose the sequence</source>
        <translation>L'operatore non può scegliere la sequenza</translation>
    </message>
    <message id="StationSettings_General_production_line">
        <source>Production line</source>
        <translation>Linea di produzione</translation>
    </message>
    <message id="StationSettings_General_sequence_warning_threshold">
        <source>Sequence warning threshold (%)</source>
        <translation>Soglia di avviso della sequenza (%)</translation>
    </message>
    <message id="StationSettings_General_sound">
        <source>Sound</source>
        <translation>Audio</translation>
    </message>
    <message id="StationSettings_General_storage_warning_limit">
        <source>Storage warning when less than (%) is free</source>
        <translation>Avviso di memoria quando lo spazio libero è inferiore a (%)</translation>
    </message>
    <message id="StationSettings_General_timeouts">
        <source>Timeouts and limits</source>
        <translation>Timeout e limiti</translation>
    </message>
    <message id="StationSettings_General_version">
        <source>Version %1</source>
        <translation>Versione %1</translation>
    </message>
    <message id="StationSettings_General_volume">
        <source>Volume</source>
        <translation>Volume</translation>
    </message>
    <message id="StationSettings_General_workplace">
        <source>Workplace</source>
        <translation>Postazione di lavoro</translation>
    </message>
    <message id="StationSettings_General_workplace_name">
        <source>Workplace name</source>
        <translation>Nome della postazione</translation>
    </message>
    <message id="StationSettings_Header_line_and_directory">
        <source>Line: %1 - station directory: %2</source>
        <translation>Linea: %1 - directory della stazione: %2</translation>
    </message>
    <message id="StationSettings_Header_preview">
        <source>preview: system settings are not applied to this computer</source>
        <translation>anteprima: le impostazioni di sistema non vengono applicate a questo computer</translation>
    </message>
    <message id="StationSettings_History">
        <source>History</source>
        <translation>Cronologia</translation>
    </message>
    <message id="StationSettings_History_changed_keys">
        <source>It changed %1 key(s): %2</source>
        <translation>Ha modificato %1 chiave/i: %2</translation>
    </message>
    <message id="StationSettings_History_confirm_restore">
        <source>Restore the version of %1? It is written over the settings document and read again; the document it replaces is kept (as a version, or beside it when damaged). Changes not saved here are lost.</source>
        <translation>Ripristinare la versione del %1? Viene scritta sul documento delle impostazioni e riletta; il documento che sostituisce viene conservato (come versione, o accanto se danneggiato). Le modifiche non salvate qui andranno perse.</translation>
    </message>
    <message id="StationSettings_History_empty">
        <source>No earlier version of the document is kept.</source>
        <translation>Non è conservata alcuna versione precedente del documento.</translation>
    </message>
    <message id="StationSettings_History_explanation">
        <source>Before each save replaces the document, the document is kept here (newest first). Restoring a version writes it over the document and reads it again; the document it replaces is kept as a version too.</source>
        <translation>Prima che ogni salvataggio sostituisca il documento, questo viene conservato qui (il più recente per primo). Ripristinare una versione la scrive sul documento e la rilegge; anche il documento sostituito viene conservato come versione.</translation>
    </message>
    <message id="StationSettings_History_no_keys">
        <source>It changed no key (the same settings, written again)</source>
        <translation>Nessuna chiave modificata (le stesse impostazioni, riscritte)</translation>
    </message>
    <message id="StationSettings_History_no_reason">
        <source>Replaced by a program that gave no reason</source>
        <translation>Sostituito da un programma che non ha indicato il motivo</translation>
    </message>
    <message id="StationSettings_History_replaced_by">
        <source>Replaced by: %1</source>
        <translation>Sostituito da: %1</translation>
    </message>
    <message id="StationSettings_History_restore">
        <source>Restore...</source>
        <translation>Ripristina...</translation>
    </message>
    <message id="StationSettings_History_restore_accept">
        <source>Restore</source>
        <translation>Ripristina</translation>
    </message>
    <message id="StationSettings_History_restore_failed">
        <source>The version could not be restored: %1</source>
        <translation>Non è stato possibile ripristinare la versione: %1</translation>
    </message>
    <message id="StationSettings_History_restore_title">
        <source>Restore a version</source>
        <translation>Ripristina una versione</translation>
    </message>
    <message id="StationSettings_History_restored">
        <source>The version of %1 was restored and read again.</source>
        <translation>La versione del %1 è stata ripristinata e riletta.</translation>
    </message>
    <message id="StationSettings_History_size">
        <source>%1 bytes</source>
        <translation>%1 byte</translation>
    </message>
    <message id="StationSettings_History_title">
        <source>Kept versions of the settings document</source>
        <translation>Versioni conservate del documento delle impostazioni</translation>
    </message>
    <message id="StationSettings_Page_folders">
        <source>Folders</source>
        <translation>Cartelle</translation>
    </message>
    <message id="StationSettings_Page_general">
        <source>General</source>
        <translation>Generale</translation>
    </message>
    <message id="StationSettings_Page_regional">
        <source>Regional settings</source>
        <translation>Impostazioni regionali</translation>
    </message>
    <message id="StationSettings_Page_sequencer">
        <source>Sequencer</source>
        <translation>Sequenziatore</translation>
    </message>
    <message id="StationSettings_Page_sync">
        <source>Synchronisation</source>
        <translation>Sincronizzazione</translation>
    </message>
    <message id="StationSettings_Page_templates">
        <source>Templates and logo</source>
        <translation>Modelli e logo</translation>
    </message>
    <message id="StationSettings_Picker_choose">
        <source>Choose</source>
        <translation>Scegli</translation>
    </message>
    <message id="StationSettings_Picker_empty">
        <source>No folder and no matching file here</source>
        <translation>Nessuna cartella e nessun file corrispondente qui</translation>
    </message>
    <message id="StationSettings_Picker_internal">
        <source>Internal storage</source>
        <translation>Memoria interna</translation>
    </message>
    <message id="StationSettings_Picker_logo_title">
        <source>Choose the logo</source>
        <translation>Scegli il logo</translation>
    </message>
    <message id="StationSettings_Picker_no_preview">
        <source>Choose an image to see it here</source>
        <translation>Scegliere un'immagine per vederla qui</translation>
    </message>
    <message id="StationSettings_Picker_removable">
        <source>Removable medium</source>
        <translation>Supporto rimovibile</translation>
    </message>
    <message id="StationSettings_Picker_template_title">
        <source>Add a report template</source>
        <translation>Aggiungi un modello di rapporto</translation>
    </message>
    <message id="StationSettings_Picker_up">
        <source>Up</source>
        <translation>Su</translation>
    </message>
    <message id="StationSettings_Regional_city">
        <source>City</source>
        <translation>Città</translation>
    </message>
    <message id="StationSettings_Regional_custom_ntp">
        <source>Custom server</source>
        <translation>Server personalizzato</translation>
    </message>
    <message id="StationSettings_Regional_custom_ntp_placeholder">
        <source>host name or address</source>
        <translation>nome host o indirizzo</translation>
    </message>
    <message id="StationSettings_Regional_date_format">
        <source>Date format</source>
        <translation>Formato della data</translation>
    </message>
    <message id="StationSettings_Regional_display">
        <source>Display</source>
        <translation>Visualizzazione</translation>
    </message>
    <message id="StationSettings_Regional_display_date">
        <source>Show the date</source>
        <translation>Mostra la data</translation>
    </message>
    <message id="StationSettings_Regional_display_seconds">
        <source>Show the seconds</source>
        <translation>Mostra i secondi</translation>
    </message>
    <message id="StationSettings_Regional_distance">
        <source>Distance</source>
        <translation>Distanza</translation>
    </message>
    <message id="StationSettings_Regional_formats">
        <source>Formats</source>
        <translation>Formati</translation>
    </message>
    <message id="StationSettings_Regional_hour_format">
        <source>Hour format</source>
        <translation>Formato dell'ora</translation>
    </message>
    <message id="StationSettings_Regional_keyboard">
        <source>Keyboard</source>
        <translation>Tastiera</translation>
    </message>
    <message id="StationSettings_Regional_language">
        <source>Language</source>
        <translation>Lingua</translation>
    </message>
    <message id="StationSettings_Regional_language_keyboard">
        <source>Language and keyboard</source>
        <translation>Lingua e tastiera</translation>
    </message>
    <message id="StationSettings_Regional_region">
        <source>Region</source>
        <translation>Regione</translation>
    </message>
    <message id="StationSettings_Regional_server">
        <source>Server</source>
        <translation>Server</translation>
    </message>
    <message id="StationSettings_Regional_temperature">
        <source>Temperature</source>
        <translation>Temperatura</translation>
    </message>
    <message id="StationSettings_Regional_time_now">
        <source>Time now</source>
        <translation>Ora attuale</translation>
    </message>
    <message id="StationSettings_Regional_time_server">
        <source>Time server</source>
        <translation>Server dell'ora</translation>
    </message>
    <message id="StationSettings_Regional_time_zone">
        <source>Time zone</source>
        <translation>Fuso orario</translation>
    </message>
    <message id="StationSettings_Regional_torque">
        <source>Torque</source>
        <translation>Coppia</translation>
    </message>
    <message id="StationSettings_Regional_units">
        <source>Units</source>
        <translation>Unità di misura</translation>
    </message>
    <message id="StationSettings_Regional_use_default_ntp">
        <source>Use the default time server</source>
        <translation>Usa il server dell'ora predefinito</translation>
    </message>
    <message id="StationSettings_Regional_weight">
        <source>Weight</source>
        <translation>Peso</translation>
    </message>
    <message id="StationSettings_Reload">
        <source>Reload</source>
        <translation>Ricarica</translation>
    </message>
    <message id="StationSettings_Reloaded">
        <source>The settings were read again from the station.</source>
        <translation>Le impostazioni sono state rilette dalla stazione.</translation>
    </message>
    <message id="StationSettings_Save">
        <source>Save</source>
        <translation>Salva</translation>
    </message>
    <message id="StationSettings_Save_failed">
        <source>The settings could not be saved: %1</source>
        <translation>Non è stato possibile salvare le impostazioni: %1</translation>
    </message>
    <message id="StationSettings_Saved">
        <source>The settings were saved.</source>
        <translation>Le impostazioni sono state salvate.</translation>
    </message>
    <message id="StationSettings_Sequencer_auto_launch">
        <source>Launch the sequence automatically</source>
        <translation>Avvia la sequenza automaticamente</translation>
    </message>
    <message id="StationSettings_Sequencer_auto_serial">
        <source>Serial number given automatically</source>
        <translation>Numero di serie assegnato automaticamente</translation>
    </message>
    <message id="StationSettings_Sequencer_code">
        <source>Input code</source>
        <translation>Codice di ingresso</translation>
    </message>
    <message id="StationSettings_Sequencer_code_taken">
        <source>Input code %1 already launches a sequence.</source>
        <translation>Il codice di ingresso %1 avvia già una sequenza.</translation>
    </message>
    <message id="StationSettings_Sequencer_io_launch">
        <source>Launch by input code</source>
        <translation>Avvio tramite codice di ingresso</translation>
    </message>
    <message id="StationSettings_Sequencer_options">
        <source>Options</source>
        <translation>Opzioni</translation>
    </message>
    <message id="StationSettings_Sequencer_relations">
        <source>Sequences launched by input code</source>
        <translation>Sequenze avviate tramite codice di ingresso</translation>
    </message>
    <message id="StationSettings_Sequencer_rework_comments">
        <source>Rework comments</source>
        <translation>Commenti di rilavorazione</translation>
    </message>
    <message id="StationSettings_Sequencer_script_data">
        <source>Script data</source>
        <translation>Dati dello script</translation>
    </message>
    <message id="StationSettings_Sequencer_script_launch">
        <source>Launch by script</source>
        <translation>Avvio tramite script</translation>
    </message>
    <message id="StationSettings_Sequencer_script_path">
        <source>Script (in the media folder)</source>
        <translation>Script (nella cartella media)</translation>
    </message>
    <message id="StationSettings_Sequencer_sequence">
        <source>Sequence</source>
        <translation>Sequenza</translation>
    </message>
    <message id="StationSettings_Sequencer_sequence_placeholder">
        <source>sequence name</source>
        <translation>nome della sequenza</translation>
    </message>
    <message id="StationSettings_Sequencer_skip_comments">
        <source>Skip comments</source>
        <translation>Commenti di salto</translation>
    </message>
    <message id="StationSettings_Sequencer_status_output">
        <source>Status output</source>
        <translation>Uscita di stato</translation>
    </message>
    <message id="StationSettings_Sync_confirm_reset">
        <source>Reset the synchronisation database? The next pass compares and copies every mirrored file again.</source>
        <translation>Reimpostare il database di sincronizzazione? Il passaggio successivo confronta e ricopia tutti i file replicati.</translation>
    </message>
    <message id="StationSettings_Sync_has_mirror">
        <source>At least one folder is mirrored to a network folder</source>
        <translation>Almeno una cartella è replicata su una cartella di rete</translation>
    </message>
    <message id="StationSettings_Sync_idle">
        <source>Waiting for the next pass</source>
        <translation>In attesa del prossimo passaggio</translation>
    </message>
    <message id="StationSettings_Sync_mirrored">
        <source>Mirrored folders</source>
        <translation>Cartelle replicate</translation>
    </message>
    <message id="StationSettings_Sync_no_mirror">
        <source>No folder is mirrored</source>
        <translation>Nessuna cartella è replicata</translation>
    </message>
    <message id="StationSettings_Sync_pause">
        <source>Pause</source>
        <translation>Pausa</translation>
    </message>
    <message id="StationSettings_Sync_paused">
        <source>Paused</source>
        <translation>In pausa</translation>
    </message>
    <message id="StationSettings_Sync_reset">
        <source>Reset</source>
        <translation>Reimposta</translation>
    </message>
    <message id="StationSettings_Sync_reset_button">
        <source>Reset the synchronisation database</source>
        <translation>Reimposta il database di sincronizzazione</translation>
    </message>
    <message id="StationSettings_Sync_reset_done">
        <source>The synchronisation database was reset.</source>
        <translation>Il database di sincronizzazione è stato reimpostato.</translation>
    </message>
    <message id="StationSettings_Sync_reset_explanation">
        <source>Forgets what was copied and copies every mirrored folder again. Files replaced on the network folder go to the trash first.</source>
        <translation>Dimentica ciò che è stato copiato e ricopia tutte le cartelle replicate. I file sostituiti sulla cartella di rete passano prima nel cestino.</translation>
    </message>
    <message id="StationSettings_Sync_reset_failed">
        <source>The synchronisation database could not be reset.</source>
        <translation>Non è stato possibile reimpostare il database di sincronizzazione.</translation>
    </message>
    <message id="StationSettings_Sync_resetting">
        <source>Resetting...</source>
        <translation>Reimpostazione...</translation>
    </message>
    <message id="StationSettings_Sync_resume">
        <source>Resume</source>
        <translation>Riprendi</translation>
    </message>
    <message id="StationSettings_Sync_running">
        <source>Copying files</source>
        <translation>Copia dei file in corso</translation>
    </message>
    <message id="StationSettings_Sync_state">
        <source>State</source>
        <translation>Stato</translation>
    </message>
    <message id="StationSettings_Sync_unavailable">
        <source>Not available on this station</source>
        <translation>Non disponibile su questa stazione</translation>
    </message>
    <message id="StationSettings_Templates_add_template">
        <source>Add a template...</source>
        <translation>Aggiungi un modello...</translation>
    </message>
    <message id="StationSettings_Templates_address">
        <source>Address</source>
        <translation>Indirizzo</translation>
    </message>
    <message id="StationSettings_Templates_apply_parameters">
        <source>Apply to the reports</source>
        <translation>Applica ai rapporti</translation>
    </message>
    <message id="StationSettings_Templates_choose_logo">
        <source>Choose a logo...</source>
        <translation>Scegli un logo...</translation>
    </message>
    <message id="StationSettings_Templates_company">
        <source>Company</source>
        <translation>Azienda</translation>
    </message>
    <message id="StationSettings_Templates_confirm_delete">
        <source>Delete the template %1 from the station? The file is removed at once.</source>
        <translation>Eliminare il modello %1 dalla stazione? Il file viene rimosso subito.</translation>
    </message>
    <message id="StationSettings_Templates_delete_title">
        <source>Delete a template</source>
        <translation>Elimina un modello</translation>
    </message>
    <message id="StationSettings_Templates_exists">
        <source>A template named %1 is already on the station: delete it first to replace it.</source>
        <translation>Sulla stazione esiste già un modello chiamato %1: eliminarlo prima per sostituirlo.</translation>
    </message>
    <message id="StationSettings_Templates_footer">
        <source>Report footer</source>
        <translation>Piè di pagina del rapporto</translation>
    </message>
    <message id="StationSettings_Templates_logo">
        <source>Logo file</source>
        <translation>File del logo</translation>
    </message>
    <message id="StationSettings_Templates_logo_exists">
        <source>A file named %1 is already in the media folder: choose it there, or rename the new one.</source>
        <translation>Nella cartella media esiste già un file chiamato %1: sceglierlo lì o rinominare quello nuovo.</translation>
    </message>
    <message id="StationSettings_Templates_no_logo">
        <source>No logo</source>
        <translation>Nessun logo</translation>
    </message>
    <message id="StationSettings_Templates_none">
        <source>No template yet</source>
        <translation>Ancora nessun modello</translation>
    </message>
    <message id="StationSettings_Templates_not_added">
        <source>The file %1 could not be added.</source>
        <translation>Non è stato possibile aggiungere il file %1.</translation>
    </message>
    <message id="StationSettings_Templates_templates">
        <source>Report templates</source>
        <translation>Modelli di rapporto</translation>
    </message>
    <message id="StationSettings_Unsaved_changes">
        <source>Unsaved changes</source>
        <translation>Modifiche non salvate</translation>
    </message>
    <message id="StationSettings_Window_title">
        <source>Station settings</source>
        <translation>Impostazioni della stazione</translation>
    </message>
</context>
</TS>
