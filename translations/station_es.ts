<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es_ES">
<context>
    <name></name>
    <message id="DZuConfiguration_Error__invalid_region__city">
        <source>Error: invalid region/city</source>
        <translation>Error: región/ciudad no válida</translation>
    </message>
    <message id="DZuConfiguration_Error_changing_system_time_zone_">
        <source>Error changing the system time zone.</source>
        <translation>Error al cambiar la zona horaria del sistema.</translation>
    </message>
    <message id="DZuConfiguration_The_system_time_zone_has_been_successfully_changed_">
        <source>The system time zone has been successfully changed.</source>
        <translation>La zona horaria del sistema se ha cambiado correctamente.</translation>
    </message>
    <message id="DZuConfiguration_distance_unit">
        <source>Distance unit</source>
        <translation>Unidad de distancia</translation>
    </message>
    <message id="DZuConfiguration_temperature_unit">
        <source>Temperature unit</source>
        <translation>Unidad de temperatura</translation>
    </message>
    <message id="DZuConfiguration_torque_unit">
        <source>Torque unit</source>
        <translation>Unidad de par</translation>
    </message>
    <message id="DZuConfiguration_weight_unit">
        <source>Weight unit</source>
        <translation>Unidad de peso</translation>
    </message>
    <message id="Directories_Cannot_delete_from_share">
        <source>Cannot delete from the share: %1</source>
        <translation>No se puede borrar en el recurso compartido: %1</translation>
    </message>
    <message id="Directories_Cannot_read_from_share">
        <source>Cannot read from the share: %1</source>
        <translation>No se puede leer del recurso compartido: %1</translation>
    </message>
    <message id="Directories_Cannot_write_to_share">
        <source>Cannot write to the share: %1</source>
        <translation>No se puede escribir en el recurso compartido: %1</translation>
    </message>
    <message id="Directories_Connection_failed">
        <source>Connection failed: %1</source>
        <translation>Error de conexión: %1</translation>
    </message>
    <message id="Directories_Connection_successful">
        <source>Connection successful</source>
        <translation>Conexión correcta</translation>
    </message>
    <message id="Directories_Connection_timeout">
        <source>Connection timed out</source>
        <translation>Tiempo de conexión agotado</translation>
    </message>
    <message id="Directories_Data_verification_failed">
        <source>Data verification failed: the file read back differs from the file written</source>
        <translation>Error en la verificación de datos: el archivo leído difiere del archivo escrito</translation>
    </message>
    <message id="Directories_Duplicate_alias">
        <source>This alias name is already used</source>
        <translation>Este nombre de alias ya está en uso</translation>
    </message>
    <message id="Directories_ERROR__Failure_to_access_to_alias_folder____1_">
        <source>ERROR: Failure to access the alias folder: %1</source>
        <translation>ERROR: no se puede acceder a la carpeta del alias: %1</translation>
    </message>
    <message id="Directories_ERROR__Failure_to_create_the_instance_of_object____1_">
        <source>ERROR: Failure to create the folder object: %1</source>
        <translation>ERROR: no se puede crear el objeto de carpeta: %1</translation>
    </message>
    <message id="Directories_ERROR__Failure_to_find_the_alias_folder____1_">
        <source>ERROR: Failure to find the alias folder: %1</source>
        <translation>ERROR: no se encuentra la carpeta del alias: %1</translation>
    </message>
    <message id="Directories_ERROR__Folder_outside_its_storage____1_">
        <source>ERROR: The folder %1 would lie outside its storage: its path may not contain ".." nor start at the root, and a network folder's name may not contain "/" or "\"</source>
        <translation>ERROR: la carpeta %1 quedaría fuera de su almacenamiento: su ruta no puede contener ".." ni empezar en la raíz, y el nombre de una carpeta de red no puede contener "/" ni "\"</translation>
    </message>
    <message id="Directories_FATAL_ERROR__Failure_to_access_to_internal_memory_folder____1_">
        <source>FATAL ERROR: Failure to access the internal memory folder: %1</source>
        <translation>ERROR GRAVE: no se puede acceder a la carpeta de la memoria interna: %1</translation>
    </message>
    <message id="Directories_FATAL_ERROR__Failure_to_create_internal_memory_folder____1_">
        <source>FATAL ERROR: Failure to create the internal memory folder: %1</source>
        <translation>ERROR GRAVE: no se puede crear la carpeta de la memoria interna: %1</translation>
    </message>
    <message id="Directories_FATAL_ERROR__Failure_to_find_the_internal_memory_folder____1_">
        <source>FATAL ERROR: Failure to find the internal memory folder: %1</source>
        <translation>ERROR GRAVE: no se encuentra la carpeta de la memoria interna: %1</translation>
    </message>
    <message id="Directories_Failed_to_create_test_folder">
        <source>Failed to create the test folder</source>
        <translation>No se pudo crear la carpeta de prueba</translation>
    </message>
    <message id="Directories_Failure_to_find_this_alias_in_the_list">
        <source>This alias cannot be found in the list</source>
        <translation>Este alias no está en la lista</translation>
    </message>
    <message id="Directories_Internal_error_test_folder_disappeared">
        <source>Internal error: the test folder disappeared</source>
        <translation>Error interno: la carpeta de prueba ha desaparecido</translation>
    </message>
    <message id="Directories_Mount_point_not_accessible">
        <source>The mount point is not accessible</source>
        <translation>El punto de montaje no es accesible</translation>
    </message>
    <message id="Directories_Previous_test_still_cleaning_up">
        <source>The previous test is still cleaning up; try again in a moment</source>
        <translation>La prueba anterior aún se está limpiando; vuelva a intentarlo en un momento</translation>
    </message>
    <message id="Folder_Internal_drive">
        <source>Internal drive</source>
        <translation>Unidad interna</translation>
    </message>
    <message id="Folder_Media">
        <source>Media</source>
        <translation>Multimedia</translation>
    </message>
    <message id="Folder_Mounted_but_path_not_found__1">
        <source>The share is mounted but the path %1 was not found</source>
        <translation>El recurso compartido está montado, pero no se encuentra la ruta %1</translation>
    </message>
    <message id="Folder_Network_drive">
        <source>Network drive</source>
        <translation>Unidad de red</translation>
    </message>
    <message id="Folder_PDF_Results">
        <source>PDF results</source>
        <translation>Resultados PDF</translation>
    </message>
    <message id="Folder_Raw_Results">
        <source>Raw results</source>
        <translation>Resultados sin procesar</translation>
    </message>
    <message id="Folder_Removable_drive">
        <source>Removable drive</source>
        <translation>Unidad extraíble</translation>
    </message>
    <message id="Folder_Scripts">
        <source>Scripts</source>
        <translation>Scripts</translation>
    </message>
    <message id="Folder_Sequences">
        <source>Sequences</source>
        <translation>Secuencias</translation>
    </message>
    <message id="Folder_Templates">
        <source>Templates</source>
        <translation>Plantillas</translation>
    </message>
    <message id="Folder_Tool_Backups">
        <source>Tool backups</source>
        <translation>Copias de seguridad de herramientas</translation>
    </message>
    <message id="Folder_Unable_to_mount__1___2__Please_check_network_configuration">
        <source>Unable to mount %1 (%2). Please check the network configuration.</source>
        <translation>No se puede montar %1 (%2). Compruebe la configuración de red.</translation>
    </message>
    <message id="StationSettings_Add">
        <source>Add</source>
        <translation>Añadir</translation>
    </message>
    <message id="StationSettings_Apply">
        <source>Apply</source>
        <translation>Aplicar</translation>
    </message>
    <message id="StationSettings_Cancel">
        <source>Cancel</source>
        <translation>Cancelar</translation>
    </message>
    <message id="StationSettings_Change">
        <source>Change</source>
        <translation>Cambiar</translation>
    </message>
    <message id="StationSettings_Close">
        <source>Close</source>
        <translation>Cerrar</translation>
    </message>
    <message id="StationSettings_Confirm_close">
        <source>Close without saving? The changes made here are lost.</source>
        <translation>¿Cerrar sin guardar? Se perderán los cambios hechos aquí.</translation>
    </message>
    <message id="StationSettings_Confirm_close_accept">
        <source>Close without saving</source>
        <translation>Cerrar sin guardar</translation>
    </message>
    <message id="StationSettings_Confirm_reload">
        <source>Read the settings again from the station? The changes not saved here are lost.</source>
        <translation>¿Volver a leer los ajustes de la estación? Se perderán los cambios no guardados aquí.</translation>
    </message>
    <message id="StationSettings_Confirm_reload_accept">
        <source>Reload and lose changes</source>
        <translation>Recargar y perder los cambios</translation>
    </message>
    <message id="StationSettings_Conflict_overwrite">
        <source>Overwrite</source>
        <translation>Sobrescribir</translation>
    </message>
    <message id="StationSettings_Conflict_text">
        <source>Another program changed the settings document since this program read it; nothing was saved. Reload its settings (the changes made here are lost), or overwrite them with the settings shown here?</source>
        <translation>Otro programa ha modificado el documento de ajustes desde que este programa lo leyó; no se ha guardado nada. ¿Volver a cargar sus ajustes (se pierden los cambios hechos aquí) o sobrescribirlos con los ajustes mostrados aquí?</translation>
    </message>
    <message id="StationSettings_Conflict_title">
        <source>Changed by another program</source>
        <translation>Modificado por otro programa</translation>
    </message>
    <message id="StationSettings_Delete">
        <source>Delete</source>
        <translation>Eliminar</translation>
    </message>
    <message id="StationSettings_Document_confirm_defaults">
        <source>Move the damaged document aside and show the default settings? Nothing is written until you save.</source>
        <translation>¿Apartar el documento dañado y mostrar los ajustes predeterminados? No se escribe nada hasta que guarde.</translation>
    </message>
    <message id="StationSettings_Document_defaults_title">
        <source>Start from defaults</source>
        <translation>Empezar con los ajustes predeterminados</translation>
    </message>
    <message id="StationSettings_Document_empty">
        <source>The file is empty: it was most likely being written when the station stopped (a crash or a power cut).</source>
        <translation>El archivo está vacío: lo más probable es que se estuviera escribiendo cuando la estación se detuvo (un fallo o un corte de corriente).</translation>
    </message>
    <message id="StationSettings_Document_file">
        <source>File: %1</source>
        <translation>Archivo: %1</translation>
    </message>
    <message id="StationSettings_Document_move_aside">
        <source>Move aside</source>
        <translation>Apartar</translation>
    </message>
    <message id="StationSettings_Document_move_failed">
        <source>The damaged document could not be moved aside: %1</source>
        <translation>No se pudo apartar el documento dañado: %1</translation>
    </message>
    <message id="StationSettings_Document_moved_aside">
        <source>The damaged document was moved to %1. The screens show default settings; Save writes a new document.</source>
        <translation>El documento dañado se ha movido a %1. Las pantallas muestran los ajustes predeterminados; Guardar escribe un documento nuevo.</translation>
    </message>
    <message id="StationSettings_Document_reason">
        <source>Problem: %1</source>
        <translation>Problema: %1</translation>
    </message>
    <message id="StationSettings_Document_reason_at">
        <source>Problem: %1, at line %2, column %3</source>
        <translation>Problema: %1, en la línea %2, columna %3</translation>
    </message>
    <message id="StationSettings_Document_restore_newest">
        <source>Restore the newest version (marked): it is the document as it was before the last save.</source>
        <translation>Restaure la versión más reciente (marcada): es el documento tal como estaba antes de la última vez que se guardó.</translation>
    </message>
    <message id="StationSettings_Document_start_from_defaults">
        <source>Start from defaults...</source>
        <translation>Empezar con los ajustes predeterminados...</translation>
    </message>
    <message id="StationSettings_Document_torn">
        <source>The file stops before the document is complete: it was most likely being written when the station stopped (a crash or a power cut).</source>
        <translation>El archivo termina antes de que el documento esté completo: lo más probable es que se estuviera escribiendo cuando la estación se detuvo (un fallo o un corte de corriente).</translation>
    </message>
    <message id="StationSettings_Document_unchanged">
        <source>Nothing was changed: the file stays as it is. The screens show default settings and Save is disabled until the document is restored or replaced.</source>
        <translation>No se ha cambiado nada: el archivo queda como está. Las pantallas muestran los ajustes predeterminados y Guardar está desactivado hasta que se restaure o se sustituya el documento.</translation>
    </message>
    <message id="StationSettings_Document_unusable_title">
        <source>The settings document cannot be used</source>
        <translation>No se puede usar el documento de ajustes</translation>
    </message>
    <message id="StationSettings_Document_way_defaults">
        <source>Or start from the default settings: the damaged file is kept beside the document as %1.damaged-&lt;time&gt;, and the first save writes a new document.</source>
        <translation>O empiece con los ajustes predeterminados: el archivo dañado se conserva junto al documento como %1.damaged-&lt;hora&gt; y la primera vez que guarde se escribe un documento nuevo.</translation>
    </message>
    <message id="StationSettings_Document_way_restore">
        <source>Restore a kept version</source>
        <translation>Restaurar una versión conservada</translation>
    </message>
    <message id="StationSettings_Folders_address">
        <source>Server address</source>
        <translation>Dirección del servidor</translation>
    </message>
    <message id="StationSettings_Folders_address_invalid">
        <source>Give a server name or an IPv4 address, with an optional port from 1 to 65535 (192.168.1.10:445).</source>
        <translation>Indique un nombre de servidor o una dirección IPv4, con un puerto opcional de 1 a 65535 (192.168.1.10:445).</translation>
    </message>
    <message id="StationSettings_Folders_address_required">
        <source>A server address is required for a network folder.</source>
        <translation>Una carpeta de red necesita una dirección de servidor.</translation>
    </message>
    <message id="StationSettings_Folders_alias">
        <source>Alias</source>
        <translation>Alias</translation>
    </message>
    <message id="StationSettings_Folders_alias_required">
        <source>An alias is required.</source>
        <translation>El alias es obligatorio.</translation>
    </message>
    <message id="StationSettings_Folders_applied">
        <source>Folder %1 applied; save to keep it.</source>
        <translation>Carpeta %1 aplicada; guarde para conservarla.</translation>
    </message>
    <message id="StationSettings_Folders_available">
        <source>Available</source>
        <translation>Disponible</translation>
    </message>
    <message id="StationSettings_Folders_choose">
        <source>Choose a folder in the list, or create a new one.</source>
        <translation>Elija una carpeta de la lista o cree una nueva.</translation>
    </message>
    <message id="StationSettings_Folders_confirm_delete">
        <source>Delete the folder %1? Its role is left without a folder until another one takes it.</source>
        <translation>¿Eliminar la carpeta %1? Su función queda sin carpeta hasta que otra la asuma.</translation>
    </message>
    <message id="StationSettings_Folders_counters">
        <source>Network folders: %1 of %2 connected - removable: %3 of %4</source>
        <translation>Carpetas de red: %1 de %2 conectadas - extraíbles: %3 de %4</translation>
    </message>
    <message id="StationSettings_Folders_delete_title">
        <source>Delete a folder</source>
        <translation>Eliminar una carpeta</translation>
    </message>
    <message id="StationSettings_Folders_disabled">
        <source>Disabled</source>
        <translation>Desactivada</translation>
    </message>
    <message id="StationSettings_Folders_domain">
        <source>Domain</source>
        <translation>Dominio</translation>
    </message>
    <message id="StationSettings_Folders_enabled">
        <source>Enabled</source>
        <translation>Activada</translation>
    </message>
    <message id="StationSettings_Folders_login">
        <source>Login</source>
        <translation>Usuario</translation>
    </message>
    <message id="StationSettings_Folders_new">
        <source>New folder</source>
        <translation>Carpeta nueva</translation>
    </message>
    <message id="StationSettings_Folders_password">
        <source>Password</source>
        <translation>Contraseña</translation>
    </message>
    <message id="StationSettings_Folders_path">
        <source>Path</source>
        <translation>Ruta</translation>
    </message>
    <message id="StationSettings_Folders_retry">
        <source>Retry connection</source>
        <translation>Reintentar la conexión</translation>
    </message>
    <message id="StationSettings_Folders_role">
        <source>Role</source>
        <translation>Función</translation>
    </message>
    <message id="StationSettings_Folders_share_path_invalid">
        <source>Give the share and, if needed, a folder in it, separated by / (results/line_b).</source>
        <translation>Indique el recurso compartido y, si hace falta, una carpeta dentro de él, separados por / (results/line_b).</translation>
    </message>
    <message id="StationSettings_Folders_status_detecting">
        <source>Looking for the server %1</source>
        <translation>Buscando el servidor %1</translation>
    </message>
    <message id="StationSettings_Folders_status_mounted">
        <source>Connected</source>
        <translation>Conectada</translation>
    </message>
    <message id="StationSettings_Folders_status_mounting">
        <source>Connecting, attempt %1 of %2</source>
        <translation>Conectando, intento %1 de %2</translation>
    </message>
    <message id="StationSettings_Folders_status_retrying">
        <source>Server %1 answered, connecting</source>
        <translation>El servidor %1 ha respondido, conectando</translation>
    </message>
    <message id="StationSettings_Folders_test_connection">
        <source>Test connection</source>
        <translation>Probar la conexión</translation>
    </message>
    <message id="StationSettings_Folders_testing">
        <source>Testing the connection...</source>
        <translation>Probando la conexión...</translation>
    </message>
    <message id="StationSettings_Folders_type">
        <source>Type</source>
        <translation>Tipo</translation>
    </message>
    <message id="StationSettings_Folders_unavailable">
        <source>Unavailable</source>
        <translation>No disponible</translation>
    </message>
    <message id="StationSettings_General_force_auto_logout">
        <source>Log every user out automatically</source>
        <translation>Cerrar la sesión de todos los usuarios automáticamente</translation>
    </message>
    <message id="StationSettings_General_hide_production_timer">
        <source>Hide the production timer</source>
        <translation>Ocultar el temporizador de producción</translation>
    </message>
    <message id="StationSettings_General_inactivity_timeout">
        <source>Logout after inactivity (seconds)</source>
        <translation>Cierre de sesión por inactividad (segundos)</translation>
    </message>
    <message id="StationSettings_General_operator">
        <source>Operator</source>
        <translation>Operario</translation>
    </message>
    <message id="StationSettings_General_operator_cannot_select_sequence">
        <source>The operator cannot choose the sequence</source>
        <translation>El operario no puede elegir la secuencia</translation>
    </message>
    <message id="StationSettings_General_production_line">
        <source>Production line</source>
        <translation>Línea de producción</translation>
    </message>
    <message id="StationSettings_General_sequence_warning_threshold">
        <source>Sequence warning threshold (%)</source>
        <translation>Umbral de aviso de secuencia (%)</translation>
    </message>
    <message id="StationSettings_General_sound">
        <source>Sound</source>
        <translation>Sonido</translation>
    </message>
    <message id="StationSettings_General_storage_warning_limit">
        <source>Storage warning when less than (%) is free</source>
        <translation>Aviso de almacenamiento cuando quede libre menos de (%)</translation>
    </message>
    <message id="StationSettings_General_timeouts">
        <source>Timeouts and limits</source>
        <translation>Tiempos y límites</translation>
    </message>
    <message id="StationSettings_General_version">
        <source>Version %1</source>
        <translation>Versión %1</translation>
    </message>
    <message id="StationSettings_General_volume">
        <source>Volume</source>
        <translation>Volumen</translation>
    </message>
    <message id="StationSettings_General_workplace">
        <source>Workplace</source>
        <translation>Puesto de trabajo</translation>
    </message>
    <message id="StationSettings_General_workplace_name">
        <source>Workplace name</source>
        <translation>Nombre del puesto de trabajo</translation>
    </message>
    <message id="StationSettings_Header_line_and_directory">
        <source>Line: %1 - station directory: %2</source>
        <translation>Línea: %1 - directorio de la estación: %2</translation>
    </message>
    <message id="StationSettings_Header_preview">
        <source>preview: system settings are not applied to this computer</source>
        <translation>vista previa: los ajustes del sistema no se aplican a este ordenador</translation>
    </message>
    <message id="StationSettings_History">
        <source>History</source>
        <translation>Historial</translation>
    </message>
    <message id="StationSettings_History_changed_keys">
        <source>It changed %1 key(s): %2</source>
        <translation>Cambió %1 clave(s): %2</translation>
    </message>
    <message id="StationSettings_History_confirm_restore">
        <source>Restore the version of %1? It is written over the settings document and read again; the document it replaces is kept (as a version, or beside it when damaged). Changes not saved here are lost.</source>
        <translation>¿Restaurar la versión del %1? Se escribe sobre el documento de ajustes y se vuelve a leer; el documento que sustituye se conserva (como versión, o a su lado si está dañado). Se perderán los cambios no guardados aquí.</translation>
    </message>
    <message id="StationSettings_History_empty">
        <source>No earlier version of the document is kept.</source>
        <translation>No se conserva ninguna versión anterior del documento.</translation>
    </message>
    <message id="StationSettings_History_explanation">
        <source>Before each save replaces the document, the document is kept here (newest first). Restoring a version writes it over the document and reads it again; the document it replaces is kept as a version too.</source>
        <translation>Antes de que cada guardado sustituya el documento, este se conserva aquí (el más reciente primero). Restaurar una versión la escribe sobre el documento y la vuelve a leer; el documento sustituido también se conserva como versión.</translation>
    </message>
    <message id="StationSettings_History_no_keys">
        <source>It changed no key (the same settings, written again)</source>
        <translation>No cambió ninguna clave (los mismos ajustes, escritos de nuevo)</translation>
    </message>
    <message id="StationSettings_History_no_reason">
        <source>Replaced by a program that gave no reason</source>
        <translation>Sustituido por un programa que no indicó el motivo</translation>
    </message>
    <message id="StationSettings_History_replaced_by">
        <source>Replaced by: %1</source>
        <translation>Sustituido por: %1</translation>
    </message>
    <message id="StationSettings_History_restore">
        <source>Restore...</source>
        <translation>Restaurar...</translation>
    </message>
    <message id="StationSettings_History_restore_accept">
        <source>Restore</source>
        <translation>Restaurar</translation>
    </message>
    <message id="StationSettings_History_restore_failed">
        <source>The version could not be restored: %1</source>
        <translation>No se pudo restaurar la versión: %1</translation>
    </message>
    <message id="StationSettings_History_restore_title">
        <source>Restore a version</source>
        <translation>Restaurar una versión</translation>
    </message>
    <message id="StationSettings_History_restored">
        <source>The version of %1 was restored and read again.</source>
        <translation>La versión del %1 se ha restaurado y vuelto a leer.</translation>
    </message>
    <message id="StationSettings_History_size">
        <source>%1 bytes</source>
        <translation>%1 bytes</translation>
    </message>
    <message id="StationSettings_History_title">
        <source>Kept versions of the settings document</source>
        <translation>Versiones conservadas del documento de ajustes</translation>
    </message>
    <message id="StationSettings_Page_folders">
        <source>Folders</source>
        <translation>Carpetas</translation>
    </message>
    <message id="StationSettings_Page_general">
        <source>General</source>
        <translation>General</translation>
    </message>
    <message id="StationSettings_Page_regional">
        <source>Regional settings</source>
        <translation>Configuración regional</translation>
    </message>
    <message id="StationSettings_Page_sequencer">
        <source>Sequencer</source>
        <translation>Secuenciador</translation>
    </message>
    <message id="StationSettings_Page_sync">
        <source>Synchronisation</source>
        <translation>Sincronización</translation>
    </message>
    <message id="StationSettings_Page_templates">
        <source>Templates and logo</source>
        <translation>Plantillas y logotipo</translation>
    </message>
    <message id="StationSettings_Picker_choose">
        <source>Choose</source>
        <translation>Elegir</translation>
    </message>
    <message id="StationSettings_Picker_empty">
        <source>No folder and no matching file here</source>
        <translation>No hay ninguna carpeta ni archivo compatible aquí</translation>
    </message>
    <message id="StationSettings_Picker_internal">
        <source>Internal storage</source>
        <translation>Almacenamiento interno</translation>
    </message>
    <message id="StationSettings_Picker_logo_title">
        <source>Choose the logo</source>
        <translation>Elegir el logotipo</translation>
    </message>
    <message id="StationSettings_Picker_no_preview">
        <source>Choose an image to see it here</source>
        <translation>Elija una imagen para verla aquí</translation>
    </message>
    <message id="StationSettings_Picker_removable">
        <source>Removable medium</source>
        <translation>Soporte extraíble</translation>
    </message>
    <message id="StationSettings_Picker_template_title">
        <source>Add a report template</source>
        <translation>Añadir una plantilla de informe</translation>
    </message>
    <message id="StationSettings_Picker_up">
        <source>Up</source>
        <translation>Subir</translation>
    </message>
    <message id="StationSettings_Regional_city">
        <source>City</source>
        <translation>Ciudad</translation>
    </message>
    <message id="StationSettings_Regional_custom_ntp">
        <source>Custom server</source>
        <translation>Servidor personalizado</translation>
    </message>
    <message id="StationSettings_Regional_custom_ntp_placeholder">
        <source>host name or address</source>
        <translation>nombre de host o dirección</translation>
    </message>
    <message id="StationSettings_Regional_date_format">
        <source>Date format</source>
        <translation>Formato de fecha</translation>
    </message>
    <message id="StationSettings_Regional_display">
        <source>Display</source>
        <translation>Visualización</translation>
    </message>
    <message id="StationSettings_Regional_display_date">
        <source>Show the date</source>
        <translation>Mostrar la fecha</translation>
    </message>
    <message id="StationSettings_Regional_display_seconds">
        <source>Show the seconds</source>
        <translation>Mostrar los segundos</translation>
    </message>
    <message id="StationSettings_Regional_distance">
        <source>Distance</source>
        <translation>Distancia</translation>
    </message>
    <message id="StationSettings_Regional_formats">
        <source>Formats</source>
        <translation>Formatos</translation>
    </message>
    <message id="StationSettings_Regional_hour_format">
        <source>Hour format</source>
        <translation>Formato de hora</translation>
    </message>
    <message id="StationSettings_Regional_keyboard">
        <source>Keyboard</source>
        <translation>Teclado</translation>
    </message>
    <message id="StationSettings_Regional_language">
        <source>Language</source>
        <translation>Idioma</translation>
    </message>
    <message id="StationSettings_Regional_language_keyboard">
        <source>Language and keyboard</source>
        <translation>Idioma y teclado</translation>
    </message>
    <message id="StationSettings_Regional_region">
        <source>Region</source>
        <translation>Región</translation>
    </message>
    <message id="StationSettings_Regional_server">
        <source>Server</source>
        <translation>Servidor</translation>
    </message>
    <message id="StationSettings_Regional_temperature">
        <source>Temperature</source>
        <translation>Temperatura</translation>
    </message>
    <message id="StationSettings_Regional_time_now">
        <source>Time now</source>
        <translation>Hora actual</translation>
    </message>
    <message id="StationSettings_Regional_time_server">
        <source>Time server</source>
        <translation>Servidor de hora</translation>
    </message>
    <message id="StationSettings_Regional_time_zone">
        <source>Time zone</source>
        <translation>Zona horaria</translation>
    </message>
    <message id="StationSettings_Regional_torque">
        <source>Torque</source>
        <translation>Par</translation>
    </message>
    <message id="StationSettings_Regional_units">
        <source>Units</source>
        <translation>Unidades</translation>
    </message>
    <message id="StationSettings_Regional_use_default_ntp">
        <source>Use the default time server</source>
        <translation>Usar el servidor de hora predeterminado</translation>
    </message>
    <message id="StationSettings_Regional_weight">
        <source>Weight</source>
        <translation>Peso</translation>
    </message>
    <message id="StationSettings_Reload">
        <source>Reload</source>
        <translation>Recargar</translation>
    </message>
    <message id="StationSettings_Reloaded">
        <source>The settings were read again from the station.</source>
        <translation>Los ajustes se han vuelto a leer de la estación.</translation>
    </message>
    <message id="StationSettings_Save">
        <source>Save</source>
        <translation>Guardar</translation>
    </message>
    <message id="StationSettings_Save_failed">
        <source>The settings could not be saved: %1</source>
        <translation>No se pudieron guardar los ajustes: %1</translation>
    </message>
    <message id="StationSettings_Saved">
        <source>The settings were saved.</source>
        <translation>Los ajustes se han guardado.</translation>
    </message>
    <message id="StationSettings_Sequencer_auto_launch">
        <source>Launch the sequence automatically</source>
        <translation>Iniciar la secuencia automáticamente</translation>
    </message>
    <message id="StationSettings_Sequencer_auto_serial">
        <source>Serial number given automatically</source>
        <translation>Número de serie asignado automáticamente</translation>
    </message>
    <message id="StationSettings_Sequencer_code">
        <source>Input code</source>
        <translation>Código de entrada</translation>
    </message>
    <message id="StationSettings_Sequencer_code_taken">
        <source>Input code %1 already launches a sequence.</source>
        <translation>El código de entrada %1 ya inicia una secuencia.</translation>
    </message>
    <message id="StationSettings_Sequencer_io_launch">
        <source>Launch by input code</source>
        <translation>Inicio por código de entrada</translation>
    </message>
    <message id="StationSettings_Sequencer_options">
        <source>Options</source>
        <translation>Opciones</translation>
    </message>
    <message id="StationSettings_Sequencer_relations">
        <source>Sequences launched by input code</source>
        <translation>Secuencias iniciadas por código de entrada</translation>
    </message>
    <message id="StationSettings_Sequencer_rework_comments">
        <source>Rework comments</source>
        <translation>Comentarios de retrabajo</translation>
    </message>
    <message id="StationSettings_Sequencer_script_data">
        <source>Script data</source>
        <translation>Datos del script</translation>
    </message>
    <message id="StationSettings_Sequencer_script_launch">
        <source>Launch by script</source>
        <translation>Inicio por script</translation>
    </message>
    <message id="StationSettings_Sequencer_script_path">
        <source>Script (in the media folder)</source>
        <translation>Script (en la carpeta multimedia)</translation>
    </message>
    <message id="StationSettings_Sequencer_sequence">
        <source>Sequence</source>
        <translation>Secuencia</translation>
    </message>
    <message id="StationSettings_Sequencer_sequence_placeholder">
        <source>sequence name</source>
        <translation>nombre de la secuencia</translation>
    </message>
    <message id="StationSettings_Sequencer_skip_comments">
        <source>Skip comments</source>
        <translation>Comentarios de omisión</translation>
    </message>
    <message id="StationSettings_Sequencer_status_output">
        <source>Status output</source>
        <translation>Salida de estado</translation>
    </message>
    <message id="StationSettings_Sync_confirm_reset">
        <source>Reset the synchronisation database? The next pass compares and copies every mirrored file again.</source>
        <translation>¿Restablecer la base de datos de sincronización? La próxima pasada compara y vuelve a copiar todos los archivos replicados.</translation>
    </message>
    <message id="StationSettings_Sync_has_mirror">
        <source>At least one folder is mirrored to a network folder</source>
        <translation>Al menos una carpeta se replica en una carpeta de red</translation>
    </message>
    <message id="StationSettings_Sync_idle">
        <source>Waiting for the next pass</source>
        <translation>Esperando la próxima pasada</translation>
    </message>
    <message id="StationSettings_Sync_mirrored">
        <source>Mirrored folders</source>
        <translation>Carpetas replicadas</translation>
    </message>
    <message id="StationSettings_Sync_no_mirror">
        <source>No folder is mirrored</source>
        <translation>Ninguna carpeta se replica</translation>
    </message>
    <message id="StationSettings_Sync_pause">
        <source>Pause</source>
        <translation>Pausar</translation>
    </message>
    <message id="StationSettings_Sync_paused">
        <source>Paused</source>
        <translation>En pausa</translation>
    </message>
    <message id="StationSettings_Sync_reset">
        <source>Reset</source>
        <translation>Restablecer</translation>
    </message>
    <message id="StationSettings_Sync_reset_button">
        <source>Reset the synchronisation database</source>
        <translation>Restablecer la base de datos de sincronización</translation>
    </message>
    <message id="StationSettings_Sync_reset_done">
        <source>The synchronisation database was reset.</source>
        <translation>La base de datos de sincronización se ha restablecido.</translation>
    </message>
    <message id="StationSettings_Sync_reset_explanation">
        <source>Forgets what was copied and copies every mirrored folder again. Files replaced on the network folder go to the trash first.</source>
        <translation>Olvida lo que se copió y vuelve a copiar todas las carpetas replicadas. Los archivos sustituidos en la carpeta de red pasan antes a la papelera.</translation>
    </message>
    <message id="StationSettings_Sync_reset_failed">
        <source>The synchronisation database could not be reset.</source>
        <translation>No se pudo restablecer la base de datos de sincronización.</translation>
    </message>
    <message id="StationSettings_Sync_resetting">
        <source>Resetting...</source>
        <translation>Restableciendo...</translation>
    </message>
    <message id="StationSettings_Sync_resume">
        <source>Resume</source>
        <translation>Reanudar</translation>
    </message>
    <message id="StationSettings_Sync_running">
        <source>Copying files</source>
        <translation>Copiando archivos</translation>
    </message>
    <message id="StationSettings_Sync_state">
        <source>State</source>
        <translation>Estado</translation>
    </message>
    <message id="StationSettings_Sync_unavailable">
        <source>Not available on this station</source>
        <translation>No disponible en esta estación</translation>
    </message>
    <message id="StationSettings_Templates_add_template">
        <source>Add a template...</source>
        <translation>Añadir una plantilla...</translation>
    </message>
    <message id="StationSettings_Templates_address">
        <source>Address</source>
        <translation>Dirección</translation>
    </message>
    <message id="StationSettings_Templates_apply_parameters">
        <source>Apply to the reports</source>
        <translation>Aplicar a los informes</translation>
    </message>
    <message id="StationSettings_Templates_choose_logo">
        <source>Choose a logo...</source>
        <translation>Elegir un logotipo...</translation>
    </message>
    <message id="StationSettings_Templates_company">
        <source>Company</source>
        <translation>Empresa</translation>
    </message>
    <message id="StationSettings_Templates_confirm_delete">
        <source>Delete the template %1 from the station? The file is removed at once.</source>
        <translation>¿Eliminar la plantilla %1 de la estación? El archivo se borra de inmediato.</translation>
    </message>
    <message id="StationSettings_Templates_delete_title">
        <source>Delete a template</source>
        <translation>Eliminar una plantilla</translation>
    </message>
    <message id="StationSettings_Templates_exists">
        <source>A template named %1 is already on the station: delete it first to replace it.</source>
        <translation>Ya hay una plantilla llamada %1 en la estación: elimínela primero para sustituirla.</translation>
    </message>
    <message id="StationSettings_Templates_footer">
        <source>Report footer</source>
        <translation>Pie de página del informe</translation>
    </message>
    <message id="StationSettings_Templates_logo">
        <source>Logo file</source>
        <translation>Archivo del logotipo</translation>
    </message>
    <message id="StationSettings_Templates_logo_exists">
        <source>A file named %1 is already in the media folder: choose it there, or rename the new one.</source>
        <translation>Ya hay un archivo llamado %1 en la carpeta multimedia: elíjalo allí o cambie el nombre del nuevo.</translation>
    </message>
    <message id="StationSettings_Templates_no_logo">
        <source>No logo</source>
        <translation>Sin logotipo</translation>
    </message>
    <message id="StationSettings_Templates_none">
        <source>No template yet</source>
        <translation>Todavía no hay plantillas</translation>
    </message>
    <message id="StationSettings_Templates_not_added">
        <source>The file %1 could not be added.</source>
        <translation>No se pudo añadir el archivo %1.</translation>
    </message>
    <message id="StationSettings_Templates_templates">
        <source>Report templates</source>
        <translation>Plantillas de informe</translation>
    </message>
    <message id="StationSettings_Unsaved_changes">
        <source>Unsaved changes</source>
        <translation>Cambios sin guardar</translation>
    </message>
    <message id="StationSettings_Window_title">
        <source>Station settings</source>
        <translation>Ajustes de la estación</translation>
    </message>
</context>
</TS>
