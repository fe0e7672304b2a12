<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es" sourcelanguage="en">
<context>
    <name>AboutDlg</name>
    <message>
        <source>About</source>
        <translation>Acerca de</translation>
    </message>
    <message>
        <source>Version %1</source>
        <translation>Versión %1</translation>
    </message>
    <message>
        <source>Running on %1 (%2)</source>
        <translation>Ejecutándose en %1 (%2)</translation>
    </message>
    <message>
        <source>Support</source>
        <translation>Soporte</translation>
    </message>
    <message>
        <source>End-User License Agreement</source>
        <translation>Contrato de licencia de usuario final</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>Aceptar</translation>
    </message>
</context>
<context>
    <name>AdvancedRepairDlg</name>
    <message>
        <source>Next</source>
        <translation>Siguiente</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancelar</translation>
    </message>
    <message>
        <source>Learn More</source>
        <translation>Más información</translation>
    </message>
    <message>
        <source>Advance Repair</source>
        <translation>Reparación avanzada</translation>
    </message>
    <message>
        <source>Use this option to repair severely damaged videos. </source>
        <translation>Use esta opción para reparar vídeos muy dañados. </translation>
    </message>
    <message>
        <source>Click &amp;quot;Next&amp;quot; to add a &apos;sample video&apos; of the same format, shot using the same device.</source>
        <translation>Haga clic en &amp;quot;Siguiente&amp;quot; para añadir un &apos;vídeo de muestra&apos; del mismo formato, grabado con el mismo dispositivo.</translation>
    </message>
    <message>
        <source>The sample and the damaged video remain unchanged during repair process.</source>
        <translation>El vídeo de muestra y el vídeo dañado no se modifican durante la reparación.</translation>
    </message>
</context>
<context>
    <name>CloseApplicationDlg</name>
    <message>
        <source>Exit</source>
        <translation>Salir</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Sí</translation>
    </message>
    <message>
        <source>No</source>
        <translation>No</translation>
    </message>
    <message>
        <source>Are you sure you want to exit?</source>
        <translation>¿Seguro que desea salir?</translation>
    </message>
</context>
<context>
    <name>ConfirmDlgClass</name>
    <message>
        <source>Yes</source>
        <translation>Sí</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancelar</translation>
    </message>
</context>
<context>
    <name>InfoDlgClass</name>
    <message>
        <source>OK</source>
        <translation>Aceptar</translation>
    </message>
</context>
<context>
    <name>QCheckUpdate</name>
    <message>
        <source>Software Update</source>
        <translation>Actualización de software</translation>
    </message>
    <message>
        <source>Checking for updates...</source>
        <translation>Buscando actualizaciones...</translation>
    </message>
    <message>
        <source>No update available.</source>
        <translation>No hay actualizaciones disponibles.</translation>
    </message>
    <message>
        <source>The update check failed: %1</source>
        <translation>La búsqueda de actualizaciones falló: %1</translation>
    </message>
    <message>
        <source>there is no network connection</source>
        <translation>no hay conexión de red</translation>
    </message>
    <message>
        <source>no update address is set</source>
        <translation>no hay ninguna dirección de actualización</translation>
    </message>
    <message>
        <source>the update address is not valid</source>
        <translation>la dirección de actualización no es válida</translation>
    </message>
    <message>
        <source>the server gave no answer</source>
        <translation>el servidor no respondió</translation>
    </message>
    <message>
        <source>the server&apos;s answer holds no version</source>
        <translation>la respuesta del servidor no contiene ninguna versión</translation>
    </message>
    <message>
        <source>this copy does not know its own version</source>
        <translation>esta copia no conoce su propia versión</translation>
    </message>
</context>
<context>
    <name>QDownloadApp</name>
    <message>
        <source>Software Update</source>
        <translation>Actualización de software</translation>
    </message>
    <message>
        <source>Downloading Files</source>
        <translation>Descargando archivos</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>Aceptar</translation>
    </message>
    <message>
        <source>Time Elapsed: </source>
        <translation>Tiempo transcurrido: </translation>
    </message>
    <message>
        <source> sec </source>
        <translation> s </translation>
    </message>
    <message>
        <source> MB copied) </source>
        <translation> MB copiados) </translation>
    </message>
    <message>
        <source>Transfer Rate: </source>
        <translation>Velocidad de transferencia: </translation>
    </message>
    <message>
        <source> KB/sec </source>
        <translation> KB/s </translation>
    </message>
    <message>
        <source>The installer could not be started: </source>
        <translation>No se pudo iniciar el instalador: </translation>
    </message>
    <message>
        <source>Update failed 

 Update failed due to partial download.</source>
        <translation>Error en la actualización 

 La actualización falló porque la descarga está incompleta.</translation>
    </message>
</context>
<context>
    <name>QShowUpdate</name>
    <message>
        <source>Update</source>
        <translation>Actualizar</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancelar</translation>
    </message>
    <message>
        <source>A new minor update </source>
        <translation>Una nueva actualización menor </translation>
    </message>
    <message>
        <source> is available. Click Update to proceed further.</source>
        <translation> está disponible. Haga clic en Actualizar para continuar.</translation>
    </message>
    <message>
        <source>A new major release </source>
        <translation>Una nueva versión principal </translation>
    </message>
</context>
<context>
    <name>ReferenceFileDlg</name>
    <message>
        <source>Browse</source>
        <translation>Examinar</translation>
    </message>
    <message>
        <source>Apply to all files of same format.</source>
        <translation>Aplicar a todos los archivos del mismo formato.</translation>
    </message>
    <message>
        <source>Repair</source>
        <translation>Reparar</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancelar</translation>
    </message>
    <message>
        <source>Add a sample video:</source>
        <translation>Añadir un vídeo de muestra:</translation>
    </message>
    <message>
        <source>Add File</source>
        <translation>Añadir archivo</translation>
    </message>
</context>
<context>
    <name>ReferenceRepairedDlg</name>
    <message>
        <source>Video file repaired successfully!</source>
        <translation>¡Archivo de vídeo reparado correctamente!</translation>
    </message>
</context>
<context>
    <name>SaveDlgClass</name>
    <message>
        <source>Save repaired file at source location.</source>
        <translation>Guardar el archivo reparado en la ubicación de origen.</translation>
    </message>
    <message>
        <source>Save file at custom location.</source>
        <translation>Guardar el archivo en una ubicación personalizada.</translation>
    </message>
    <message>
        <source>Browse</source>
        <translation>Examinar</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Guardar</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancelar</translation>
    </message>
    <message>
        <source>Reelwright </source>
        <translation>Reelwright </translation>
    </message>
    <message>
        <source>Select Folder</source>
        <translation>Seleccionar carpeta</translation>
    </message>
</context>
<context>
    <name>StopDlg</name>
    <message>
        <source>Yes</source>
        <translation>Sí</translation>
    </message>
    <message>
        <source>No</source>
        <translation>No</translation>
    </message>
    <message>
        <source>Do you want to stop the current process?</source>
        <translation>¿Desea detener el proceso actual?</translation>
    </message>
    <message>
        <source>You can&apos;t resume the process from this point. All the changes will be discarded. </source>
        <translation>No podrá reanudar el proceso desde este punto. Se descartarán todos los cambios. </translation>
    </message>
</context>
<context>
    <name>VideoRepairWin</name>
    <message>
        <source>Reelwright</source>
        <translation>Reelwright</translation>
    </message>
    <message>
        <source>Reelwright Video Repair</source>
        <translation>Reelwright Reparación de vídeo</translation>
    </message>
    <message>
        <source>✕</source>
        <translation>✕</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Cerrar</translation>
    </message>
    <message>
        <source>□</source>
        <translation>□</translation>
    </message>
    <message>
        <source>–</source>
        <translation>–</translation>
    </message>
    <message>
        <source>Minimise</source>
        <translation>Minimizar</translation>
    </message>
    <message>
        <source>≡</source>
        <translation>≡</translation>
    </message>
    <message>
        <source>Menu</source>
        <translation>Menú</translation>
    </message>
    <message>
        <source>About</source>
        <translation>Acerca de</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Ayuda</translation>
    </message>
    <message>
        <source>Update</source>
        <translation>Actualizar</translation>
    </message>
    <message>
        <source>Add Your Corrupt Videos to Repair</source>
        <translation>Añada los vídeos dañados que desea reparar</translation>
    </message>
    <message>
        <source>+</source>
        <translation>+</translation>
    </message>
    <message>
        <source>Add Videos</source>
        <translation>Añadir vídeos</translation>
    </message>
    <message>
        <source>Repair Your Videos</source>
        <translation>Repare sus vídeos</translation>
    </message>
    <message>
        <source>Click &apos;Repair&apos; button to fix corrupted videos. This may take a while depending on the number of videos and their size</source>
        <translation>Haga clic en &apos;Reparar&apos; para corregir los vídeos dañados. Puede tardar un poco según el número de vídeos y su tamaño.</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>Seleccionar todo</translation>
    </message>
    <message>
        <source>List of video files</source>
        <translation>Lista de archivos de vídeo</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>Añadir</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Quitar</translation>
    </message>
    <message>
        <source>Repair</source>
        <translation>Reparar</translation>
    </message>
    <message>
        <source>Repaired files will be saved at the source file location.</source>
        <translation>Los archivos reparados se guardarán en la ubicación del archivo de origen.</translation>
    </message>
    <message>
        <source>To change location</source>
        <translation>Para cambiar la ubicación</translation>
    </message>
    <message>
        <source>Click here</source>
        <translation>Haga clic aquí</translation>
    </message>
    <message>
        <source>Repairing selected videos</source>
        <translation>Reparando los vídeos seleccionados</translation>
    </message>
    <message>
        <source>This may take a while, depending on the number of videos and their file size. Please wait while the process is completed.</source>
        <translation>Puede tardar un poco según el número de vídeos y el tamaño de los archivos. Espere mientras se completa el proceso.</translation>
    </message>
    <message>
        <source>Overall Progress</source>
        <translation>Progreso general</translation>
    </message>
    <message>
        <source>0%</source>
        <translation>0%</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Atrás</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Detener</translation>
    </message>
    <message>
        <source>Save Repaired Files</source>
        <translation>Guardar archivos reparados</translation>
    </message>
    <message>
        <source>Preview</source>
        <translation>Vista previa</translation>
    </message>
    <message>
        <source>What is a reference file?</source>
        <translation>¿Qué es un archivo de referencia?</translation>
    </message>
</context>
<context>
    <name>VideoRepairWindow</name>
    <message>
        <source>Completed</source>
        <translation>Completado</translation>
    </message>
    <message>
        <source>Preview</source>
        <translation>Vista previa</translation>
    </message>
    <message>
        <source>Awaiting Action</source>
        <translation>Pendiente</translation>
    </message>
    <message>
        <source>Advance Repair</source>
        <translation>Rep. avanzada</translation>
    </message>
    <message>
        <source>The sample video can&apos;t be read. Choose another sample video.</source>
        <translation>No se puede leer el vídeo de muestra. Elija otro vídeo de muestra.</translation>
    </message>
    <message>
        <source>Advance Repair Running</source>
        <translation>Reparación avanzada en curso</translation>
    </message>
    <message>
        <source>Please wait while the &apos;Advance Repair&apos; process is running.</source>
        <translation>Espere mientras se ejecuta la &apos;Reparación avanzada&apos;.</translation>
    </message>
    <message>
        <source> File Name</source>
        <translation> Nombre de archivo</translation>
    </message>
    <message>
        <source> Path</source>
        <translation> Ruta</translation>
    </message>
    <message>
        <source> Size (MB)</source>
        <translation> Tamaño (MB)</translation>
    </message>
    <message>
        <source> Modified Date</source>
        <translation> Fecha de modificación</translation>
    </message>
    <message>
        <source> Created Date</source>
        <translation> Fecha de creación</translation>
    </message>
    <message>
        <source>Add File</source>
        <translation>Añadir archivo</translation>
    </message>
    <message>
        <source>Files already added to list will be skipped.</source>
        <translation>Los archivos ya añadidos a la lista se omitirán.</translation>
    </message>
    <message>
        <source>Repaired files will be saved at the source file location.</source>
        <translation>Los archivos reparados se guardarán en la ubicación del archivo de origen.</translation>
    </message>
    <message>
        <source>To change location</source>
        <translation>Para cambiar la ubicación</translation>
    </message>
    <message>
        <source>List of video files</source>
        <translation>Lista de archivos de vídeo</translation>
    </message>
    <message>
        <source>No video player was found to preview the file. Install mpv or mplayer and try again.</source>
        <translation>No se encontró ningún reproductor de vídeo para la vista previa. Instale mpv o mplayer e inténtelo de nuevo.</translation>
    </message>
    <message>
        <source>Processing</source>
        <translation>Procesando</translation>
    </message>
    <message>
        <source>Failed</source>
        <translation>Error</translation>
    </message>
    <message>
        <source>Aborted</source>
        <translation>Cancelado</translation>
    </message>
    <message>
        <source>Repair Process Completed</source>
        <translation>Reparación completada</translation>
    </message>
    <message>
        <source>Click on the &apos;Save Repaired Files&apos; to save all your repaired videos. Click the &apos;Preview&apos; under Action column to preview repaired videos. </source>
        <translation>Haga clic en &apos;Guardar archivos reparados&apos; para guardar todos los vídeos reparados. Haga clic en &apos;Vista previa&apos; en la columna Acción para verlos. </translation>
    </message>
    <message>
        <source>This video is severely damaged. Run advance repair option to repair it before saving.</source>
        <translation>Este vídeo está muy dañado. Ejecute la reparación avanzada antes de guardarlo.</translation>
    </message>
    <message>
        <source>This video is severely corrupted and cannot be repaired.</source>
        <translation>Este vídeo está muy dañado y no se puede reparar.</translation>
    </message>
    <message>
        <source>  Path</source>
        <translation>  Ruta</translation>
    </message>
    <message>
        <source> Status</source>
        <translation> Estado</translation>
    </message>
    <message>
        <source> Action</source>
        <translation> Acción</translation>
    </message>
    <message>
        <source>Repairing selected videos</source>
        <translation>Reparando los vídeos seleccionados</translation>
    </message>
    <message>
        <source>This may take a while, depending on the number of videos and their file size. Please wait while the process is completed.</source>
        <translation>Puede tardar un poco según el número de vídeos y el tamaño de los archivos. Espere mientras se completa el proceso.</translation>
    </message>
    <message>
        <source>Queued</source>
        <translation>En cola</translation>
    </message>
    <message>
        <source>Repairing </source>
        <translation>Reparando </translation>
    </message>
    <message>
        <source>This process will stop after processing the current file.</source>
        <translation>El proceso se detendrá después de procesar el archivo actual.</translation>
    </message>
    <message>
        <source>Do you want to stop the process?</source>
        <translation>¿Desea detener el proceso?</translation>
    </message>
    <message>
        <source>Do you want to stop the current process?</source>
        <translation>¿Desea detener el proceso actual?</translation>
    </message>
    <message>
        <source>You can&apos;t resume the process from this point. All the changes will be discarded. </source>
        <translation>No podrá reanudar el proceso desde este punto. Se descartarán todos los cambios. </translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Sí</translation>
    </message>
    <message>
        <source>No</source>
        <translation>No</translation>
    </message>
    <message>
        <source>Choose Location</source>
        <translation>Elegir ubicación</translation>
    </message>
    <message>
        <source>Repair process completed.
Check &apos;Status&apos; column to view the repair outcome.</source>
        <translation>Reparación completada.
Consulte la columna &apos;Estado&apos; para ver el resultado.</translation>
    </message>
    <message>
        <source>Repaired files saved successfully.</source>
        <translation>Archivos reparados guardados correctamente.</translation>
    </message>
    <message>
        <source>Wait while repaired files are being saved.</source>
        <translation>Espere mientras se guardan los archivos reparados.</translation>
    </message>
    <message>
        <source>The chosen folder can&apos;t be found. Choose another folder.</source>
        <translation>No se encuentra la carpeta elegida. Elija otra carpeta.</translation>
    </message>
    <message numerus="yes">
        <source>%n repaired file(s) could not be saved in the chosen folder. Check that the folder can be written to, or choose another one.</source>
        <translation>
            <numerusform>No se pudo guardar %n archivo reparado en la carpeta elegida. Compruebe que se puede escribir en la carpeta o elija otra.</numerusform>
            <numerusform>No se pudieron guardar %n archivos reparados en la carpeta elegida. Compruebe que se puede escribir en la carpeta o elija otra.</numerusform>
        </translation>
    </message>
    <message>
        <source>Add Videos</source>
        <translation>Añadir vídeos</translation>
    </message>
    <message>
        <source>Repair</source>
        <translation>Reparar</translation>
    </message>
    <message>
        <source>Save Repaired Files</source>
        <translation>Guardar archivos reparados</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Detener</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>Añadir</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Quitar</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Atrás</translation>
    </message>
    <message>
        <source>Add Your Corrupt Videos to Repair</source>
        <translation>Añada los vídeos dañados que desea reparar</translation>
    </message>
    <message>
        <source>Repair Your Videos</source>
        <translation>Repare sus vídeos</translation>
    </message>
    <message>
        <source>Click &apos;Repair&apos; button to fix corrupted videos. This may take a while depending on the number of videos and their size</source>
        <translation>Haga clic en &apos;Reparar&apos; para corregir los vídeos dañados. Puede tardar un poco según el número de vídeos y su tamaño.</translation>
    </message>
    <message>
        <source>About</source>
        <translation>Acerca de</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Ayuda</translation>
    </message>
    <message>
        <source>Update</source>
        <translation>Actualizar</translation>
    </message>
    <message>
        <source>Do you want to run advance repair on the severely corrupted video before leaving this page?</source>
        <translation>¿Desea ejecutar la reparación avanzada en el vídeo muy dañado antes de salir de esta página?</translation>
    </message>
    <message>
        <source>This action will clear repair results.
Do you want to go back to previous screen?</source>
        <translation>Esta acción borrará los resultados de la reparación.
¿Desea volver a la pantalla anterior?</translation>
    </message>
    <message>
        <source>Languages</source>
        <translation>Idiomas</translation>
    </message>
    <message>
        <source>More Tools</source>
        <translation>Más herramientas</translation>
    </message>
    <message>
        <source>Application Running! 
Please halt the current process to Exit.</source>
        <translation>¡La aplicación está en ejecución!
Detenga el proceso actual para salir.</translation>
    </message>
    <message>
        <source>Do you want to run advance repair on the severely corrupted files before exiting?</source>
        <translation>¿Desea ejecutar la reparación avanzada de los archivos muy dañados antes de salir?</translation>
    </message>
    <message>
        <source>Are you sure you want to exit?</source>
        <translation>¿Seguro que desea salir?</translation>
    </message>
    <message>
        <source>Recover Data</source>
        <translation>Recuperar datos</translation>
    </message>
    <message>
        <source>Repair Photo</source>
        <translation>Reparar fotos</translation>
    </message>
    <message>
        <source>Recover Photo</source>
        <translation>Recuperar fotos</translation>
    </message>
    <message>
        <source>Monitor Drive</source>
        <translation>Supervisar unidad</translation>
    </message>
    <message>
        <source>%1 frames</source>
        <translation>%1 fotogramas</translation>
    </message>
    <message>
        <source>%1 min %2 s of sound</source>
        <translation>%1 min %2 s de sonido</translation>
    </message>
    <message>
        <source>%1 s of sound</source>
        <translation>%1 s de sonido</translation>
    </message>
    <message>
        <source>%1 damaged bytes skipped</source>
        <translation>%1 bytes dañados omitidos</translation>
    </message>
    <message>
        <source>%1 unreadable bytes read as zeros</source>
        <translation>%1 bytes ilegibles leídos como ceros</translation>
    </message>
    <message>
        <source>Adding videos: %1 in the list</source>
        <translation>Añadiendo vídeos: %1 en la lista</translation>
    </message>
    <message>
        <source>Skipped, not videos this program repairs: %1</source>
        <translation>Omitidos, no son vídeos que este programa repare: %1</translation>
    </message>
    <message>
        <source>Not found: %1</source>
        <translation>No encontrado: %1</translation>
    </message>
    <message>
        <source>These files can no longer be found and are left out: %1</source>
        <translation>Estos archivos ya no se encuentran y se omiten: %1</translation>
    </message>
    <message>
        <source>The video player %1 could not be started.</source>
        <translation>No se pudo iniciar el reproductor de vídeo %1.</translation>
    </message>
    <message>
        <source>The video player %1 ended at once without showing the file.</source>
        <translation>El reproductor de vídeo %1 se cerró enseguida sin mostrar el archivo.</translation>
    </message>
    <message>
        <source>%1 could not be started.</source>
        <translation>No se pudo iniciar %1.</translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <source>Reelwright is already running.</source>
        <translation>Reelwright ya se está ejecutando.</translation>
    </message>
</context>
<context>
    <name>repairFinishDialog</name>
    <message>
        <source> Repair process completed.</source>
        <translation> Reparación completada.</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>Aceptar</translation>
    </message>
    <message>
        <source>What is a reference file?</source>
        <translation>¿Qué es un archivo de referencia?</translation>
    </message>
</context>
</TS>
