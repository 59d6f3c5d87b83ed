<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr_FR">
<context>
    <name></name>
    <message id="DZuConfiguration_Error__invalid_region__city">
        <source>Error: invalid region/city</source>
        <translation>Erreur : région/ville non valide</translation>
    </message>
    <message id="DZuConfiguration_Error_changing_system_time_zone_">
        <source>Error changing the system time zone.</source>
        <translation>Erreur lors du changement du fuseau horaire du système.</translation>
    </message>
    <message id="DZuConfiguration_The_system_time_zone_has_been_successfully_changed_">
        <source>The system time zone has been successfully changed.</source>
        <translation>Le fuseau horaire du système a été modifié.</translation>
    </message>
    <message id="DZuConfiguration_distance_unit">
        <source>Distance unit</source>
        <translation>Unité de distance</translation>
    </message>
    <message id="DZuConfiguration_temperature_unit">
        <source>Temperature unit</source>
        <translation>Unité de température</translation>
    </message>
    <message id="DZuConfiguration_torque_unit">
        <source>Torque unit</source>
        <translation>Unité de couple</translation>
    </message>
    <message id="DZuConfiguration_weight_unit">
        <source>Weight unit</source>
        <translation>Unité de poids</translation>
    </message>
    <message id="Directories_Cannot_delete_from_share">
        <source>Cannot delete from the share: %1</source>
        <translation>Suppression impossible sur le partage : %1</translation>
    </message>
    <message id="Directories_Cannot_read_from_share">
        <source>Cannot read from the share: %1</source>
        <translation>Lecture impossible sur le partage : %1</translation>
    </message>
    <message id="Directories_Cannot_write_to_share">
        <source>Cannot write to the share: %1</source>
        <translation>Écriture impossible sur le partage : %1</translation>
    </message>
    <message id="Directories_Connection_failed">
        <source>Connection failed: %1</source>
        <translation>Échec de la connexion : %1</translation>
    </message>
    <message id="Directories_Connection_successful">
        <source>Connection successful</source>
        <translation>Connexion réussie</translation>
    </message>
    <message id="Directories_Connection_timeout">
        <source>Connection timed out</source>
        <translation>Délai de connexion dépassé</translation>
    </message>
    <message id="Directories_Data_verification_failed">
        <source>Data verification failed: the file read back differs from the file written</source>
        <translation>Échec de la vérification des données : le fichier relu diffère du fichier écrit</translation>
    </message>
    <message id="Directories_Duplicate_alias">
        <source>This alias name is already used</source>
        <translation>Ce nom d'alias est déjà utilisé</translation>
    </message>
    <message id="Directories_ERROR__Failure_to_access_to_alias_folder____1_">
        <source>ERROR: Failure to access the alias folder: %1</source>
        <translation>ERREUR : impossible d'accéder au dossier de l'alias : %1</translation>
    </message>
    <message id="Directories_ERROR__Failure_to_create_the_instance_of_object____1_">
        <source>ERROR: Failure to create the folder object: %1</source>
        <translation>ERREUR : impossible de créer l'objet dossier : %1</translation>
    </message>
    <message id="Directories_ERROR__Failure_to_find_the_alias_folder____1_">
        <source>ERROR: Failure to find the alias folder: %1</source>
        <translation>ERREUR : dossier de l'alias introuvable : %1</translation>
    </message>
    <message id="Directories_ERROR__Folder_outside_its_storage____1_">
        <source>ERROR: The folder %1 would lie outside its storage: its path may not contain ".." nor start at the root, and a network folder's name may not contain "/" or "\"</source>
        <translation>ERREUR : le dossier %1 serait hors de son stockage : son chemin ne doit pas contenir ".." ni commencer à la racine, et le nom d'un dossier réseau ne doit contenir ni "/" ni "\"</translation>
    </message>
    <message id="Directories_FATAL_ERROR__Failure_to_access_to_internal_memory_folder____1_">
        <source>FATAL ERROR: Failure to access the internal memory folder: %1</source>
        <translation>ERREUR FATALE : impossible d'accéder au dossier de la mémoire interne : %1</translation>
    </message>
    <message id="Directories_FATAL_ERROR__Failure_to_create_internal_memory_folder____1_">
        <source>FATAL ERROR: Failure to create the internal memory folder: %1</source>
        <translation>ERREUR FATALE : impossible de créer le dossier de la mémoire interne : %1</translation>
    </message>
    <message id="Directories_FATAL_ERROR__Failure_to_find_the_internal_memory_folder____1_">
        <source>FATAL ERROR: Failure to find the internal memory folder: %1</source>
        <translation>ERREUR FATALE : dossier de la mémoire interne introuvable : %1</translation>
    </message>
    <message id="Directories_Failed_to_create_test_folder">
        <source>Failed to create the test folder</source>
        <translation>Impossible de créer le dossier de test</translation>
    </message>
    <message id="Directories_Failure_to_find_this_alias_in_the_list">
        <source>This alias cannot be found in the list</source>
        <translation>Cet alias est introuvable dans la liste</translation>
    </message>
    <message id="Directories_Internal_error_test_folder_disappeared">
        <source>Internal error: the test folder disappeared</source>
        <translation>Erreur interne : le dossier de test a disparu</translation>
    </message>
    <message id="Directories_Mount_point_not_accessible">
        <source>The mount point is not accessible</source>
        <translation>Le point de montage n'est pas accessible</translation>
    </message>
    <message id="Directories_Previous_test_still_cleaning_up">
        <source>The previous test is still cleaning up; try again in a moment</source>
        <translation>Le test précédent n'a pas fini de nettoyer ; réessayez dans un instant</translation>
    </message>
    <message id="Folder_Internal_drive">
        <source>Internal drive</source>
        <translation>Mémoire interne</translation>
    </message>
    <message id="Folder_Media">
        <source>Media</source>
        <translation>Médias</translation>
    </message>
    <message id="Folder_Mounted_but_path_not_found__1">
        <source>The share is mounted but the path %1 was not found</source>
        <translation>Le partage est monté mais le chemin %1 est introuvable</translation>
    </message>
    <message id="Folder_Network_drive">
        <source>Network drive</source>
        <translation>Lecteur réseau</translation>
    </message>
    <message id="Folder_PDF_Results">
        <source>PDF results</source>
        <translation>Résultats PDF</translation>
    </message>
    <message id="Folder_Raw_Results">
        <source>Raw results</source>
        <translation>Résultats bruts</translation>
    </message>
    <message id="Folder_Removable_drive">
        <source>Removable drive</source>
        <translation>Support amovible</translation>
    </message>
    <message id="Folder_Scripts">
        <source>Scripts</source>
        <translation>Scripts</translation>
    </message>
    <message id="Folder_Sequences">
        <source>Sequences</source>
        <translation>Séquences</translation>
    </message>
    <message id="Folder_Templates">
        <source>Templates</source>
        <translation>Modèles</translation>
    </message>
    <message id="Folder_Tool_Backups">
        <source>Tool backups</source>
        <translation>Sauvegardes des outils</translation>
    </message>
    <message id="Folder_Unable_to_mount__1___2__Please_check_network_configuration">
        <source>Unable to mount %1 (%2). Please check the network configuration.</source>
        <translation>Impossible de monter %1 (%2). Vérifiez la configuration réseau.</translation>
    </message>
    <message id="StationSettings_Add">
        <source>Add</source>
        <translation>Ajouter</translation>
    </message>
    <message id="StationSettings_Apply">
        <source>Apply</source>
        <translation>Appliquer</translation>
    </message>
    <message id="StationSettings_Cancel">
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message id="StationSettings_Change">
        <source>Change</source>
        <translation>Modifier</translation>
    </message>
    <message id="StationSettings_Close">
        <source>Close</source>
        <translation>Fermer</translation>
    </message>
    <message id="StationSettings_Confirm_close">
        <source>Close without saving? The changes made here are lost.</source>
        <translation>Fermer sans enregistrer ? Les modifications faites ici seront perdues.</translation>
    </message>
    <message id="StationSettings_Confirm_close_accept">
        <source>Close without saving</source>
        <translation>Fermer sans enregistrer</translation>
    </message>
    <message id="StationSettings_Confirm_reload">
        <source>Read the settings again from the station? The changes not saved here are lost.</source>
        <translation>Relire les réglages depuis la station ? Les modifications non enregistrées ici seront perdues.</translation>
    </message>
    <message id="StationSettings_Confirm_reload_accept">
        <source>Reload and lose changes</source>
        <translation>Recharger et perdre les modifications</translation>
    </message>
    <message id="StationSettings_Conflict_overwrite">
        <source>Overwrite</source>
        <translation>Écraser</translation>
    </message>
    <message id="StationSettings_Conflict_text">
        <source>Another program changed the settings document since this program read it; nothing was saved. Reload its settings (the changes made here are lost), or overwrite them with the settings shown here?</source>
        <translation>Un autre programme a modifié le document des réglages depuis que ce programme l'a lu ; rien n'a été enregistré. Relire ses réglages (les modifications faites ici sont perdues) ou les écraser avec les réglages affichés ici ?</translation>
    </message>
    <message id="StationSettings_Conflict_title">
        <source>Changed by another program</source>
        <translation>Modifié par un autre programme</translation>
    </message>
    <message id="StationSettings_Delete">
        <source>Delete</source>
        <translation>Supprimer</translation>
    </message>
    <message id="StationSettings_Document_confirm_defaults">
        <source>Move the damaged document aside and show the default settings? Nothing is written until you save.</source>
        <translation>Mettre le document endommagé de côté et afficher les réglages par défaut ? Rien n'est écrit avant l'enregistrement.</translation>
    </message>
    <message id="StationSettings_Document_defaults_title">
        <source>Start from defaults</source>
        <translation>Repartir des réglages par défaut</translation>
    </message>
    <message id="StationSettings_Document_empty">
        <source>The file is empty: it was most likely being written when the station stopped (a crash or a power cut).</source>
        <translation>Le fichier est vide : il était très probablement en cours d'écriture quand la station s'est arrêtée (plantage ou coupure de courant).</translation>
    </message>
    <message id="StationSettings_Document_file">
        <source>File: %1</source>
        <translation>Fichier : %1</translation>
    </message>
    <message id="StationSettings_Document_move_aside">
        <source>Move aside</source>
        <translation>Mettre de côté</translation>
    </message>
    <message id="StationSettings_Document_move_failed">
        <source>The damaged document could not be moved aside: %1</source>
        <translation>Le document endommagé n'a pas pu être mis de côté : %1</translation>
    </message>
    <message id="StationSettings_Document_moved_aside">
        <source>The damaged document was moved to %1. The screens show default settings; Save writes a new document.</source>
        <translation>Le document endommagé a été déplacé vers %1. Les écrans affichent les réglages par défaut ; Enregistrer écrit un nouveau document.</translation>
    </message>
    <message id="StationSettings_Document_reason">
        <source>Problem: %1</source>
        <translation>Problème : %1</translation>
    </message>
    <message id="StationSettings_Document_reason_at">
        <source>Problem: %1, at line %2, column %3</source>
        <translation>Problème : %1, ligne %2, colonne %3</translation>
    </message>
    <message id="StationSettings_Document_restore_newest">
        <source>Restore the newest version (marked): it is the document as it was before the last save.</source>
        <translation>Restaurez la version la plus récente (marquée) : c'est le document tel qu'il était avant le dernier enregistrement.</translation>
    </message>
    <message id="StationSettings_Document_start_from_defaults">
        <source>Start from defaults...</source>
        <translation>Repartir des réglages par défaut...</translation>
    </message>
    <message id="StationSettings_Document_torn">
        <source>The file stops before the document is complete: it was most likely being written when the station stopped (a crash or a power cut).</source>
        <translation>Le fichier s'arrête avant la fin du document : il était très probablement en cours d'écriture quand la station s'est arrêtée (plantage ou coupure de courant).</translation>
    </message>
    <message id="StationSettings_Document_unchanged">
        <source>Nothing was changed: the file stays as it is. The screens show default settings and Save is disabled until the document is restored or replaced.</source>
        <translation>Rien n'a été modifié : le fichier reste tel quel. Les écrans affichent les réglages par défaut et Enregistrer reste désactivé tant que le document n'est pas restauré ou remplacé.</translation>
    </message>
    <message id="StationSettings_Document_unusable_title">
        <source>The settings document cannot be used</source>
        <translation>Le document des réglages est inutilisable</translation>
    </message>
    <message id="StationSettings_Document_way_defaults">
        <source>Or start from the default settings: the damaged file is kept beside the document as %1.damaged-&lt;time&gt;, and the first save writes a new document.</source>
        <translation>Ou repartez des réglages par défaut : le fichier endommagé est conservé à côté du document sous le nom %1.damaged-&lt;heure&gt;, et le premier enregistrement écrit un nouveau document.</translation>
    </message>
    <message id="StationSettings_Document_way_restore">
        <source>Restore a kept version</source>
        <translation>Restaurer une version conservée</translation>
    </message>
    <message id="StationSettings_Folders_address">
        <source>Server address</source>
        <translation>Adresse du serveur</translation>
    </message>
    <message id="StationSettings_Folders_address_invalid">
        <source>Give a server name or an IPv4 address, with an optional port from 1 to 65535 (192.168.1.10:445).</source>
        <translation>Indiquez un nom de serveur ou une adresse IPv4, avec un port facultatif de 1 à 65535 (192.168.1.10:445).</translation>
    </message>
    <message id="StationSettings_Folders_address_required">
        <source>A server address is required for a network folder.</source>
        <translation>Une adresse de serveur est obligatoire pour un dossier réseau.</translation>
    </message>
    <message id="StationSettings_Folders_alias">
        <source>Alias</source>
        <translation>Alias</translation>
    </message>
    <message id="StationSettings_Folders_alias_required">
        <source>An alias is required.</source>
        <translation>Un alias est obligatoire.</translation>
    </message>
    <message id="StationSettings_Folders_applied">
        <source>Folder %1 applied; save to keep it.</source>
        <translation>Dossier %1 appliqué ; enregistrez pour le conserver.</translation>
    </message>
    <message id="StationSettings_Folders_available">
        <source>Available</source>
        <translation>Disponible</translation>
    </message>
    <message id="StationSettings_Folders_choose">
        <source>Choose a folder in the list, or create a new one.</source>
        <translation>Choisissez un dossier dans la liste ou créez-en un nouveau.</translation>
    </message>
    <message id="StationSettings_Folders_confirm_delete">
        <source>Delete the folder %1? Its role is left without a folder until another one takes it.</source>
        <translation>Supprimer le dossier %1 ? Son rôle reste sans dossier jusqu'à ce qu'un autre le reprenne.</translation>
    </message>
    <message id="StationSettings_Folders_counters">
        <source>Network folders: %1 of %2 connected - removable: %3 of %4</source>
        <translation>Dossiers réseau : %1 sur %2 connectés - amovibles : %3 sur %4</translation>
    </message>
    <message id="StationSettings_Folders_delete_title">
        <source>Delete a folder</source>
        <translation>Supprimer un dossier</translation>
    </message>
    <message id="StationSettings_Folders_disabled">
        <source>Disabled</source>
        <translation>Désactivé</translation>
    </message>
    <message id="StationSettings_Folders_domain">
        <source>Domain</source>
        <translation>Domaine</translation>
    </message>
    <message id="StationSettings_Folders_enabled">
        <source>Enabled</source>
        <translation>Activé</translation>
    </message>
    <message id="StationSettings_Folders_login">
        <source>Login</source>
        <translation>Identifiant</translation>
    </message>
    <message id="StationSettings_Folders_new">
        <source>New folder</source>
        <translation>Nouveau dossier</translation>
    </message>
    <message id="StationSettings_Folders_password">
        <source>Password</source>
        <translation>Mot de passe</translation>
    </message>
    <message id="StationSettings_Folders_path">
        <source>Path</source>
        <translation>Chemin</translation>
    </message>
    <message id="StationSettings_Folders_retry">
        <source>Retry connection</source>
        <translation>Réessayer la connexion</translation>
    </message>
    <message id="StationSettings_Folders_role">
        <source>Role</source>
        <translation>Rôle</translation>
    </message>
    <message id="StationSettings_Folders_share_path_invalid">
        <source>Give the share and, if needed, a folder in it, separated by / (results/line_b).</source>
        <translation>Indiquez le partage et, si besoin, un dossier à l'intérieur, séparés par / (results/line_b).</translation>
    </message>
    <message id="StationSettings_Folders_status_detecting">
        <source>Looking for the server %1</source>
        <translation>Recherche du serveur %1</translation>
    </message>
    <message id="StationSettings_Folders_status_mounted">
        <source>Connected</source>
        <translation>Connecté</translation>
    </message>
    <message id="StationSettings_Folders_status_mounting">
        <source>Connecting, attempt %1 of %2</source>
        <translation>Connexion, tentative %1 sur %2</translation>
    </message>
    <message id="StationSettings_Folders_status_retrying">
        <source>Server %1 answered, connecting</source>
        <translation>Le serveur %1 a répondu, connexion en cours</translation>
    </message>
    <message id="StationSettings_Folders_test_connection">
        <source>Test connection</source>
        <translation>Tester la connexion</translation>
    </message>
    <message id="StationSettings_Folders_testing">
        <source>Testing the connection...</source>
        <translation>Test de la connexion...</translation>
    </message>
    <message id="StationSettings_Folders_type">
        <source>Type</source>
        <translation>Type</translation>
    </message>
    <message id="StationSettings_Folders_unavailable">
        <source>Unavailable</source>
        <translation>Indisponible</translation>
    </message>
    <message id="StationSettings_General_force_auto_logout">
        <source>Log every user out automatically</source>
        <translation>Déconnecter automatiquement tous les utilisateurs</translation>
    </message>
    <message id="StationSettings_General_hide_production_timer">
        <source>Hide the production timer</source>
        <translation>Masquer le chronomètre de production</translation>
    </message>
    <message id="StationSettings_General_inactivity_timeout">
        <source>Logout after inactivity (seconds)</source>
        <translation>Déconnexion après inactivité (secondes)</translation>
    </message>
    <message id="StationSettings_General_operator">
        <source>Operator</source>
        <translation>Opérateur</translation>
    </message>
    <message id="StationSettings_General_operator_cannot_select_sequence">
        <source>The operator cannot choose the sequence</source>
        <translation>L'opérateur ne peut pas choisir la séquence</translation>
    </message>
    <message id="StationSettings_General_production_line">
        <source>Production line</source>
        <translation>Ligne de production</translation>
    </message>
    <message id="StationSettings_General_sequence_warning_threshold">
        <source>Sequence warning threshold (%)</source>
        <translation>Seuil d'alerte de séquence (%)</translation>
    </message>
    <message id="StationSettings_General_sound">
        <source>Sound</source>
        <translation>Son</translation>
    </message>
    <message id="StationSettings_General_storage_warning_limit">
        <source>Storage warning when less than (%) is free</source>
        <translation>Alerte de stockage quand l'espace libre est inférieur à (%)</translation>
    </message>
    <message id="StationSettings_General_timeouts">
        <source>Timeouts and limits</source>
        <translation>Délais et limites</translation>
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
        <translation>Poste de travail</translation>
    </message>
    <message id="StationSettings_General_workplace_name">
        <source>Workplace name</source>
        <translation>Nom du poste de travail</translation>
    </message>
    <message id="StationSettings_Header_line_and_directory">
        <source>Line: %1 - station directory: %2</source>
        <translation>Ligne : %1 - répertoire de la station : %2</translation>
    </message>
    <message id="StationSettings_Header_preview">
        <source>preview: system settings are not applied to this computer</source>
        <translation>aperçu : les réglages système ne sont pas appliqués à cet ordinateur</translation>
    </message>
    <message id="StationSettings_History">
        <source>History</source>
        <translation>Historique</translation>
    </message>
    <message id="StationSettings_History_changed_keys">
        <source>It changed %1 key(s): %2</source>
        <translation>%1 clé(s) modifiée(s) : %2</translation>
    </message>
    <message id="StationSettings_History_confirm_restore">
        <source>Restore the version of %1? It is written over the settings document and read again; the document it replaces is kept (as a version, or beside it when damaged). Changes not saved here are lost.</source>
        <translation>Restaurer la version du %1 ? Elle est écrite à la place du document des réglages puis relue ; le document qu'elle remplace est conservé (comme version, ou à côté s'il est endommagé). Les modifications non enregistrées ici seront perdues.</translation>
    </message>
    <message id="StationSettings_History_empty">
        <source>No earlier version of the document is kept.</source>
        <translation>Aucune version antérieure du document n'est conservée.</translation>
    </message>
    <message id="StationSettings_History_explanation">
        <source>Before each save replaces the document, the document is kept here (newest first). Restoring a version writes it over the document and reads it again; the document it replaces is kept as a version too.</source>
        <translation>Avant que chaque enregistrement ne remplace le document, celui-ci est conservé ici (le plus récent en premier). Restaurer une version l'écrit à la place du document puis la relit ; le document remplacé est lui aussi conservé comme version.</translation>
    </message>
    <message id="StationSettings_History_no_keys">
        <source>It changed no key (the same settings, written again)</source>
        <translation>Aucune clé modifiée (les mêmes réglages, réécrits)</translation>
    </message>
    <message id="StationSettings_History_no_reason">
        <source>Replaced by a program that gave no reason</source>
        <translation>Remplacé par un programme qui n'a pas donné de raison</translation>
    </message>
    <message id="StationSettings_History_replaced_by">
        <source>Replaced by: %1</source>
        <translation>Remplacé par : %1</translation>
    </message>
    <message id="StationSettings_History_restore">
        <source>Restore...</source>
        <translation>Restaurer...</translation>
    </message>
    <message id="StationSettings_History_restore_accept">
        <source>Restore</source>
        <translation>Restaurer</translation>
    </message>
    <message id="StationSettings_History_restore_failed">
        <source>The version could not be restored: %1</source>
        <translation>La version n'a pas pu être restaurée : %1</translation>
    </message>
    <message id="StationSettings_History_restore_title">
        <source>Restore a version</source>
        <translation>Restaurer une version</translation>
    </message>
    <message id="StationSettings_History_restored">
        <source>The version of %1 was restored and read again.</source>
        <translation>La version du %1 a été restaurée et relue.</translation>
    </message>
    <message id="StationSettings_History_size">
        <source>%1 bytes</source>
        <translation>%1 octets</translation>
    </message>
    <message id="StationSettings_History_title">
        <source>Kept versions of the settings document</source>
        <translation>Versions conservées du document des réglages</translation>
    </message>
    <message id="StationSettings_Page_folders">
        <source>Folders</source>
        <translation>Dossiers</translation>
    </message>
    <message id="StationSettings_Page_general">
        <source>General</source>
        <translation>Général</translation>
    </message>
    <message id="StationSettings_Page_regional">
        <source>Regional settings</source>
        <translation>Réglages régionaux</translation>
    </message>
    <message id="StationSettings_Page_sequencer">
        <source>Sequencer</source>
        <translation>Séquenceur</translation>
    </message>
    <message id="StationSettings_Page_sync">
        <source>Synchronisation</source>
        <translation>Synchronisation</translation>
    </message>
    <message id="StationSettings_Page_templates">
        <source>Templates and logo</source>
        <translation>Modèles et logo</translation>
    </message>
    <message id="StationSettings_Picker_choose">
        <source>Choose</source>
        <translation>Choisir</translation>
    </message>
    <message id="StationSettings_Picker_empty">
        <source>No folder and no matching file here</source>
        <translation>Aucun dossier ni fichier correspondant ici</translation>
    </message>
    <message id="StationSettings_Picker_internal">
        <source>Internal storage</source>
        <translation>Mémoire interne</translation>
    </message>
    <message id="StationSettings_Picker_logo_title">
        <source>Choose the logo</source>
        <translation>Choisir le logo</translation>
    </message>
    <message id="StationSettings_Picker_no_preview">
        <source>Choose an image to see it here</source>
        <translation>Choisissez une image pour la voir ici</translation>
    </message>
    <message id="StationSettings_Picker_removable">
        <source>Removable medium</source>
        <translation>Support amovible</translation>
    </message>
    <message id="StationSettings_Picker_template_title">
        <source>Add a report template</source>
        <translation>Ajouter un modèle de rapport</translation>
    </message>
    <message id="StationSettings_Picker_up">
        <source>Up</source>
        <translation>Remonter</translation>
    </message>
    <message id="StationSettings_Regional_city">
        <source>City</source>
        <translation>Ville</translation>
    </message>
    <message id="StationSettings_Regional_custom_ntp">
        <source>Custom server</source>
        <translation>Serveur personnalisé</translation>
    </message>
    <message id="StationSettings_Regional_custom_ntp_placeholder">
        <source>host name or address</source>
        <translation>nom d'hôte ou adresse</translation>
    </message>
    <message id="StationSettings_Regional_date_format">
        <source>Date format</source>
        <translation>Format de la date</translation>
    </message>
    <message id="StationSettings_Regional_display">
        <source>Display</source>
        <translation>Affichage</translation>
    </message>
    <message id="StationSettings_Regional_display_date">
        <source>Show the date</source>
        <translation>Afficher la date</translation>
    </message>
    <message id="StationSettings_Regional_display_seconds">
        <source>Show the seconds</source>
        <translation>Afficher les secondes</translation>
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
        <translation>Format de l'heure</translation>
    </message>
    <message id="StationSettings_Regional_keyboard">
        <source>Keyboard</source>
        <translation>Clavier</translation>
    </message>
    <message id="StationSettings_Regional_language">
        <source>Language</source>
        <translation>Langue</translation>
    </message>
    <message id="StationSettings_Regional_language_keyboard">
        <source>Language and keyboard</source>
        <translation>Langue et clavier</translation>
    </message>
    <message id="StationSettings_Regional_region">
        <source>Region</source>
        <translation>Région</translation>
    </message>
    <message id="StationSettings_Regional_server">
        <source>Server</source>
        <translation>Serveur</translation>
    </message>
    <message id="StationSettings_Regional_temperature">
        <source>Temperature</source>
        <translation>Température</translation>
    </message>
    <message id="StationSettings_Regional_time_now">
        <source>Time now</source>
        <translation>Heure actuelle</translation>
    </message>
    <message id="StationSettings_Regional_time_server">
        <source>Time server</source>
        <translation>Serveur de temps</translation>
    </message>
    <message id="StationSettings_Regional_time_zone">
        <source>Time zone</source>
        <translation>Fuseau horaire</translation>
    </message>
    <message id="StationSettings_Regional_torque">
        <source>Torque</source>
        <translation>Couple</translation>
    </message>
    <message id="StationSettings_Regional_units">
        <source>Units</source>
        <translation>Unités</translation>
    </message>
    <message id="StationSettings_Regional_use_default_ntp">
        <source>Use the default time server</source>
        <translation>Utiliser le serveur de temps par défaut</translation>
    </message>
    <message id="StationSettings_Regional_weight">
        <source>Weight</source>
        <translation>Poids</translation>
    </message>
    <message id="StationSettings_Reload">
        <source>Reload</source>
        <translation>Recharger</translation>
    </message>
    <message id="StationSettings_Reloaded">
        <source>The settings were read again from the station.</source>
        <translation>Les réglages ont été relus depuis la station.</translation>
    </message>
    <message id="StationSettings_Save">
        <source>Save</source>
        <translation>Enregistrer</translation>
    </message>
    <message id="StationSettings_Save_failed">
        <source>The settings could not be saved: %1</source>
        <translation>Les réglages n'ont pas pu être enregistrés : %1</translation>
    </message>
    <message id="StationSettings_Saved">
        <source>The settings were saved.</source>
        <translation>Les réglages ont été enregistrés.</translation>
    </message>
    <message id="StationSettings_Sequencer_auto_launch">
        <source>Launch the sequence automatically</source>
        <translation>Lancer la séquence automatiquement</translation>
    </message>
    <message id="StationSettings_Sequencer_auto_serial">
        <source>Serial number given automatically</source>
        <translation>Numéro de série attribué automatiquement</translation>
    </message>
    <message id="StationSettings_Sequencer_code">
        <source>Input code</source>
        <translation>Code d'entrée</translation>
    </message>
    <message id="StationSettings_Sequencer_code_taken">
        <source>Input code %1 already launches a sequence.</source>
        <translation>Le code d'entrée %1 lance déjà une séquence.</translation>
    </message>
    <message id="StationSettings_Sequencer_io_launch">
        <source>Launch by input code</source>
        <translation>Lancement par code d'entrée</translation>
    </message>
    <message id="StationSettings_Sequencer_options">
        <source>Options</source>
        <translation>Options</translation>
    </message>
    <message id="StationSettings_Sequencer_relations">
        <source>Sequences launched by input code</source>
        <translation>Séquences lancées par code d'entrée</translation>
    </message>
    <message id="StationSettings_Sequencer_rework_comments">
        <source>Rework comments</source>
        <translation>Commentaires de retouche</translation>
    </message>
    <message id="StationSettings_Sequencer_script_data">
        <source>Script data</source>
        <translation>Données du script</translation>
    </message>
    <message id="StationSettings_Sequencer_script_launch">
        <source>Launch by script</source>
        <translation>Lancement par script</translation>
    </message>
    <message id="StationSettings_Sequencer_script_path">
        <source>Script (in the media folder)</source>
        <translation>Script (dans le dossier médias)</translation>
    </message>
    <message id="StationSettings_Sequencer_sequence">
        <source>Sequence</source>
        <translation>Séquence</translation>
    </message>
    <message id="StationSettings_Sequencer_sequence_placeholder">
        <source>sequence name</source>
        <translation>nom de la séquence</translation>
    </message>
    <message id="StationSettings_Sequencer_skip_comments">
        <source>Skip comments</source>
        <translation>Commentaires de saut</translation>
    </message>
    <message id="StationSettings_Sequencer_status_output">
        <source>Status output</source>
        <translation>Sortie d'état</translation>
    </message>
    <message id="StationSettings_Sync_confirm_reset">
        <source>Reset the synchronisation database? The next pass compares and copies every mirrored file again.</source>
        <translation>Réinitialiser la base de synchronisation ? Le passage suivant compare et recopie tous les fichiers en miroir.</translation>
    </message>
    <message id="StationSettings_Sync_has_mirror">
        <source>At least one folder is mirrored to a network folder</source>
        <translation>Au moins un dossier est mis en miroir vers un dossier réseau</translation>
    </message>
    <message id="StationSettings_Sync_idle">
        <source>Waiting for the next pass</source>
        <translation>En attente du prochain passage</translation>
    </message>
    <message id="StationSettings_Sync_mirrored">
        <source>Mirrored folders</source>
        <translation>Dossiers en miroir</translation>
    </message>
    <message id="StationSettings_Sync_no_mirror">
        <source>No folder is mirrored</source>
        <translation>Aucun dossier n'est mis en miroir</translation>
    </message>
    <message id="StationSettings_Sync_pause">
        <source>Pause</source>
        <translation>Pause</translation>
    </message>
    <message id="StationSettings_Sync_paused">
        <source>Paused</source>
        <translation>En pause</translation>
    </message>
    <message id="StationSettings_Sync_reset">
        <source>Reset</source>
        <translation>Réinitialiser</translation>
    </message>
    <message id="StationSettings_Sync_reset_button">
        <source>Reset the synchronisation database</source>
        <translation>Réinitialiser la base de synchronisation</translation>
    </message>
    <message id="StationSettings_Sync_reset_done">
        <source>The synchronisation database was reset.</source>
        <translation>La base de synchronisation a été réinitialisée.</translation>
    </message>
    <message id="StationSettings_Sync_reset_explanation">
        <source>Forgets what was copied and copies every mirrored folder again. Files replaced on the network folder go to the trash first.</source>
        <translation>Oublie ce qui a été copié et recopie tous les dossiers en miroir. Les fichiers remplacés sur le dossier réseau passent d'abord par la corbeille.</translation>
    </message>
    <message id="StationSettings_Sync_reset_failed">
        <source>The synchronisation database could not be reset.</source>
        <translation>La base de synchronisation n'a pas pu être réinitialisée.</translation>
    </message>
    <message id="StationSettings_Sync_resetting">
        <source>Resetting...</source>
        <translation>Réinitialisation...</translation>
    </message>
    <message id="StationSettings_Sync_resume">
        <source>Resume</source>
        <translation>Reprendre</translation>
    </message>
    <message id="StationSettings_Sync_running">
        <source>Copying files</source>
        <translation>Copie des fichiers</translation>
    </message>
    <message id="StationSettings_Sync_state">
        <source>State</source>
        <translation>État</translation>
    </message>
    <message id="StationSettings_Sync_unavailable">
        <source>Not available on this station</source>
        <translation>Non disponible sur cette station</translation>
    </message>
    <message id="StationSettings_Templates_add_template">
        <source>Add a template...</source>
        <translation>Ajouter un modèle...</translation>
    </message>
    <message id="StationSettings_Templates_address">
        <source>Address</source>
        <translation>Adresse</translation>
    </message>
    <message id="StationSettings_Templates_apply_parameters">
        <source>Apply to the reports</source>
        <translation>Appliquer aux rapports</translation>
    </message>
    <message id="StationSettings_Templates_choose_logo">
        <source>Choose a logo...</source>
        <translation>Choisir un logo...</translation>
    </message>
    <message id="StationSettings_Templates_company">
        <source>Company</source>
        <translation>Société</translation>
    </message>
    <message id="StationSettings_Templates_confirm_delete">
        <source>Delete the template %1 from the station? The file is removed at once.</source>
        <translation>Supprimer le modèle %1 de la station ? Le fichier est supprimé immédiatement.</translation>
    </message>
    <message id="StationSettings_Templates_delete_title">
        <source>Delete a template</source>
        <translation>Supprimer un modèle</translation>
    </message>
    <message id="StationSettings_Templates_exists">
        <source>A template named %1 is already on the station: delete it first to replace it.</source>
        <translation>Un modèle nommé %1 existe déjà sur la station : supprimez-le d'abord pour le remplacer.</translation>
    </message>
    <message id="StationSettings_Templates_footer">
        <source>Report footer</source>
        <translation>Pied de page du rapport</translation>
    </message>
    <message id="StationSettings_Templates_logo">
        <source>Logo file</source>
        <translation>Fichier du logo</translation>
    </message>
    <message id="StationSettings_Templates_logo_exists">
        <source>A file named %1 is already in the media folder: choose it there, or rename the new one.</source>
        <translation>Un fichier nommé %1 existe déjà dans le dossier médias : choisissez-le là-bas, ou renommez le nouveau.</translation>
    </message>
    <message id="StationSettings_Templates_no_logo">
        <source>No logo</source>
        <translation>Aucun logo</translation>
    </message>
    <message id="StationSettings_Templates_none">
        <source>No template yet</source>
        <translation>Aucun modèle pour l'instant</translation>
    </message>
    <message id="StationSettings_Templates_not_added">
        <source>The file %1 could not be added.</source>
        <translation>Le fichier %1 n'a pas pu être ajouté.</translation>
    </message>
    <message id="StationSettings_Templates_templates">
        <source>Report templates</source>
        <translation>Modèles de rapport</translation>
    </message>
    <message id="StationSettings_Unsaved_changes">
        <source>Unsaved changes</source>
        <translation>Modifications non enregistrées</translation>
    </message>
    <message id="StationSettings_Window_title">
        <source>Station settings</source>
        <translation>Réglages de la station</translation>
    </message>
</context>
</TS>
