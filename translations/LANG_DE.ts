<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>AboutDlg</name>
    <message>
        <source>About</source>
        <translation>Info</translation>
    </message>
    <message>
        <source>Version %1</source>
        <translation>Version %1</translation>
    </message>
    <message>
        <source>Running on %1 (%2)</source>
        <translation>Läuft unter %1 (%2)</translation>
    </message>
    <message>
        <source>Support</source>
        <translation>Support</translation>
    </message>
    <message>
        <source>End-User License Agreement</source>
        <translation>Endbenutzer-Lizenzvertrag</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
</context>
<context>
    <name>AdvancedRepairDlg</name>
    <message>
        <source>Next</source>
        <translation>Weiter</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Learn More</source>
        <translation>Mehr erfahren</translation>
    </message>
    <message>
        <source>Advance Repair</source>
        <translation>Tiefenreparatur</translation>
    </message>
    <message>
        <source>Use this option to repair severely damaged videos. </source>
        <translation>Verwenden Sie diese Option, um stark beschädigte Videos zu reparieren. </translation>
    </message>
    <message>
        <source>Click &amp;quot;Next&amp;quot; to add a &apos;sample video&apos; of the same format, shot using the same device.</source>
        <translation>Klicken Sie auf &amp;quot;Weiter&amp;quot;, um ein &apos;Beispielvideo&apos; im selben Format hinzuzufügen, das mit demselben Gerät aufgenommen wurde.</translation>
    </message>
    <message>
        <source>The sample and the damaged video remain unchanged during repair process.</source>
        <translation>Das Beispielvideo und das beschädigte Video bleiben bei der Reparatur unverändert.</translation>
    </message>
</context>
<context>
    <name>CloseApplicationDlg</name>
    <message>
        <source>Exit</source>
        <translation>Beenden</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Ja</translation>
    </message>
    <message>
        <source>No</source>
        <translation>Nein</translation>
    </message>
    <message>
        <source>Are you sure you want to exit?</source>
        <translation>Möchten Sie das Programm wirklich beenden?</translation>
    </message>
</context>
<context>
    <name>ConfirmDlgClass</name>
    <message>
        <source>Yes</source>
        <translation>Ja</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
</context>
<context>
    <name>InfoDlgClass</name>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
</context>
<context>
    <name>QCheckUpdate</name>
    <message>
        <source>Software Update</source>
        <translation>Software-Update</translation>
    </message>
    <message>
        <source>Checking for updates...</source>
        <translation>Suche nach Updates...</translation>
    </message>
    <message>
        <source>No update available.</source>
        <translation>Kein Update verfügbar.</translation>
    </message>
    <message>
        <source>The update check failed: %1</source>
        <translation>Die Suche nach Updates ist fehlgeschlagen: %1</translation>
    </message>
    <message>
        <source>there is no network connection</source>
        <translation>es besteht keine Netzwerkverbindung</translation>
    </message>
    <message>
        <source>no update address is set</source>
        <translation>keine Update-Adresse festgelegt</translation>
    </message>
    <message>
        <source>the update address is not valid</source>
        <translation>die Update-Adresse ist ungültig</translation>
    </message>
    <message>
        <source>the server gave no answer</source>
        <translation>der Server hat nicht geantwortet</translation>
    </message>
    <message>
        <source>the server&apos;s answer holds no version</source>
        <translation>die Antwort des Servers enthält keine Version</translation>
    </message>
    <message>
        <source>this copy does not know its own version</source>
        <translation>diese Kopie kennt ihre eigene Version nicht</translation>
    </message>
</context>
<context>
    <name>QDownloadApp</name>
    <message>
        <source>Software Update</source>
        <translation>Software-Update</translation>
    </message>
    <message>
        <source>Downloading Files</source>
        <translation>Dateien werden heruntergeladen</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Time Elapsed: </source>
        <translation>Verstrichene Zeit: </translation>
    </message>
    <message>
        <source> sec </source>
        <translation> s </translation>
    </message>
    <message>
        <source> MB copied) </source>
        <translation> MB kopiert) </translation>
    </message>
    <message>
        <source>Transfer Rate: </source>
        <translation>Übertragungsrate: </translation>
    </message>
    <message>
        <source> KB/sec </source>
        <translation> KB/s </translation>
    </message>
    <message>
        <source>The installer could not be started: </source>
        <translation>Das Installationsprogramm konnte nicht gestartet werden: </translation>
    </message>
    <message>
        <source>Update failed 

 Update failed due to partial download.</source>
        <translation>Update fehlgeschlagen 

 Das Update ist wegen eines unvollständigen Downloads fehlgeschlagen.</translation>
    </message>
</context>
<context>
    <name>QShowUpdate</name>
    <message>
        <source>Update</source>
        <translation>Aktualisieren</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>A new minor update </source>
        <translation>Ein neues kleineres Update </translation>
    </message>
    <message>
        <source> is available. Click Update to proceed further.</source>
        <translation> ist verfügbar. Klicken Sie auf Aktualisieren, um fortzufahren.</translation>
    </message>
    <message>
        <source>A new major release </source>
        <translation>Eine neue Hauptversion </translation>
    </message>
</context>
<context>
    <name>ReferenceFileDlg</name>
    <message>
        <source>Browse</source>
        <translation>Durchsuchen</translation>
    </message>
    <message>
        <source>Apply to all files of same format.</source>
        <translation>Auf alle Dateien desselben Formats anwenden.</translation>
    </message>
    <message>
        <source>Repair</source>
        <translation>Reparieren</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Add a sample video:</source>
        <translation>Beispielvideo hinzufügen:</translation>
    </message>
    <message>
        <source>Add File</source>
        <translation>Datei hinzufügen</translation>
    </message>
</context>
<context>
    <name>ReferenceRepairedDlg</name>
    <message>
        <source>Video file repaired successfully!</source>
        <translation>Videodatei erfolgreich repariert!</translation>
    </message>
</context>
<context>
    <name>SaveDlgClass</name>
    <message>
        <source>Save repaired file at source location.</source>
        <translation>Reparierte Datei am Quellort speichern.</translation>
    </message>
    <message>
        <source>Save file at custom location.</source>
        <translation>Datei an einem eigenen Ort speichern.</translation>
    </message>
    <message>
        <source>Browse</source>
        <translation>Durchsuchen</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Speichern</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Reelwright </source>
        <translation>Reelwright </translation>
    </message>
    <message>
        <source>Select Folder</source>
        <translation>Ordner auswählen</translation>
    </message>
</context>
<context>
    <name>StopDlg</name>
    <message>
        <source>Yes</source>
        <translation>Ja</translation>
    </message>
    <message>
        <source>No</source>
        <translation>Nein</translation>
    </message>
    <message>
        <source>Do you want to stop the current process?</source>
        <translation>Möchten Sie den aktuellen Vorgang beenden?</translation>
    </message>
    <message>
        <source>You can&apos;t resume the process from this point. All the changes will be discarded. </source>
        <translation>Der Vorgang kann an dieser Stelle nicht fortgesetzt werden. Alle Änderungen werden verworfen. </translation>
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
        <translation>Reelwright Videoreparatur</translation>
    </message>
    <message>
        <source>✕</source>
        <translation>✕</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
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
        <translation>Minimieren</translation>
    </message>
    <message>
        <source>≡</source>
        <translation>≡</translation>
    </message>
    <message>
        <source>Menu</source>
        <translation>Menü</translation>
    </message>
    <message>
        <source>About</source>
        <translation>Info</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Hilfe</translation>
    </message>
    <message>
        <source>Update</source>
        <translation>Aktualisieren</translation>
    </message>
    <message>
        <source>Add Your Corrupt Videos to Repair</source>
        <translation>Beschädigte Videos zur Reparatur hinzufügen</translation>
    </message>
    <message>
        <source>+</source>
        <translation>+</translation>
    </message>
    <message>
        <source>Add Videos</source>
        <translation>Videos hinzufügen</translation>
    </message>
    <message>
        <source>Repair Your Videos</source>
        <translation>Videos reparieren</translation>
    </message>
    <message>
        <source>Click &apos;Repair&apos; button to fix corrupted videos. This may take a while depending on the number of videos and their size</source>
        <translation>Klicken Sie auf &apos;Reparieren&apos;, um beschädigte Videos zu reparieren. Je nach Anzahl und Größe der Videos kann dies eine Weile dauern.</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>Alle auswählen</translation>
    </message>
    <message>
        <source>List of video files</source>
        <translation>Liste der Videodateien</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>Hinzufügen</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Entfernen</translation>
    </message>
    <message>
        <source>Repair</source>
        <translation>Reparieren</translation>
    </message>
    <message>
        <source>Repaired files will be saved at the source file location.</source>
        <translation>Reparierte Dateien werden am Ort der Quelldatei gespeichert.</translation>
    </message>
    <message>
        <source>To change location</source>
        <translation>Ort ändern</translation>
    </message>
    <message>
        <source>Click here</source>
        <translation>Hier klicken</translation>
    </message>
    <message>
        <source>Repairing selected videos</source>
        <translation>Ausgewählte Videos werden repariert</translation>
    </message>
    <message>
        <source>This may take a while, depending on the number of videos and their file size. Please wait while the process is completed.</source>
        <translation>Dies kann je nach Anzahl der Videos und ihrer Dateigröße eine Weile dauern. Bitte warten Sie, bis der Vorgang abgeschlossen ist.</translation>
    </message>
    <message>
        <source>Overall Progress</source>
        <translation>Gesamtfortschritt</translation>
    </message>
    <message>
        <source>0%</source>
        <translation>0%</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Zurück</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Stopp</translation>
    </message>
    <message>
        <source>Save Repaired Files</source>
        <translation>Reparierte Dateien speichern</translation>
    </message>
    <message>
        <source>Preview</source>
        <translation>Vorschau</translation>
    </message>
    <message>
        <source>What is a reference file?</source>
        <translation>Was ist eine Referenzdatei?</translation>
    </message>
</context>
<context>
    <name>VideoRepairWindow</name>
    <message>
        <source>Completed</source>
        <translation>Abgeschlossen</translation>
    </message>
    <message>
        <source>Preview</source>
        <translation>Vorschau</translation>
    </message>
    <message>
        <source>Awaiting Action</source>
        <translation>Aktion nötig</translation>
    </message>
    <message>
        <source>Advance Repair</source>
        <translation>Tiefenrep.</translation>
    </message>
    <message>
        <source>The sample video can&apos;t be read. Choose another sample video.</source>
        <translation>Das Beispielvideo kann nicht gelesen werden. Wählen Sie ein anderes Beispielvideo.</translation>
    </message>
    <message>
        <source>Advance Repair Running</source>
        <translation>Tiefenreparatur läuft</translation>
    </message>
    <message>
        <source>Please wait while the &apos;Advance Repair&apos; process is running.</source>
        <translation>Bitte warten Sie, während die &apos;Tiefenreparatur&apos; läuft.</translation>
    </message>
    <message>
        <source> File Name</source>
        <translation> Dateiname</translation>
    </message>
    <message>
        <source> Path</source>
        <translation> Pfad</translation>
    </message>
    <message>
        <source> Size (MB)</source>
        <translation> Größe (MB)</translation>
    </message>
    <message>
        <source> Modified Date</source>
        <translation> Änderungsdatum</translation>
    </message>
    <message>
        <source> Created Date</source>
        <translation> Erstellungsdatum</translation>
    </message>
    <message>
        <source>Add File</source>
        <translation>Datei hinzufügen</translation>
    </message>
    <message>
        <source>Files already added to list will be skipped.</source>
        <translation>Bereits hinzugefügte Dateien werden übersprungen.</translation>
    </message>
    <message>
        <source>Repaired files will be saved at the source file location.</source>
        <translation>Reparierte Dateien werden am Ort der Quelldatei gespeichert.</translation>
    </message>
    <message>
        <source>To change location</source>
        <translation>Ort ändern</translation>
    </message>
    <message>
        <source>List of video files</source>
        <translation>Liste der Videodateien</translation>
    </message>
    <message>
        <source>No video player was found to preview the file. Install mpv or mplayer and try again.</source>
        <translation>Zur Vorschau wurde kein Videoplayer gefunden. Installieren Sie mpv oder mplayer und versuchen Sie es erneut.</translation>
    </message>
    <message>
        <source>Processing</source>
        <translation>In Arbeit</translation>
    </message>
    <message>
        <source>Failed</source>
        <translation>Fehlgeschlagen</translation>
    </message>
    <message>
        <source>Aborted</source>
        <translation>Abgebrochen</translation>
    </message>
    <message>
        <source>Repair Process Completed</source>
        <translation>Reparatur abgeschlossen</translation>
    </message>
    <message>
        <source>Click on the &apos;Save Repaired Files&apos; to save all your repaired videos. Click the &apos;Preview&apos; under Action column to preview repaired videos. </source>
        <translation>Klicken Sie auf &apos;Reparierte Dateien speichern&apos;, um alle reparierten Videos zu speichern. Klicken Sie in der Spalte Aktion auf &apos;Vorschau&apos;, um sie anzusehen. </translation>
    </message>
    <message>
        <source>This video is severely damaged. Run advance repair option to repair it before saving.</source>
        <translation>Dieses Video ist stark beschädigt. Führen Sie vor dem Speichern die Tiefenreparatur aus.</translation>
    </message>
    <message>
        <source>This video is severely corrupted and cannot be repaired.</source>
        <translation>Dieses Video ist stark beschädigt und kann nicht repariert werden.</translation>
    </message>
    <message>
        <source>  Path</source>
        <translation>  Pfad</translation>
    </message>
    <message>
        <source> Status</source>
        <translation> Status</translation>
    </message>
    <message>
        <source> Action</source>
        <translation> Aktion</translation>
    </message>
    <message>
        <source>Repairing selected videos</source>
        <translation>Ausgewählte Videos werden repariert</translation>
    </message>
    <message>
        <source>This may take a while, depending on the number of videos and their file size. Please wait while the process is completed.</source>
        <translation>Dies kann je nach Anzahl der Videos und ihrer Dateigröße eine Weile dauern. Bitte warten Sie, bis der Vorgang abgeschlossen ist.</translation>
    </message>
    <message>
        <source>Queued</source>
        <translation>Wartend</translation>
    </message>
    <message>
        <source>Repairing </source>
        <translation>Reparatur: </translation>
    </message>
    <message>
        <source>This process will stop after processing the current file.</source>
        <translation>Der Vorgang wird nach der aktuellen Datei beendet.</translation>
    </message>
    <message>
        <source>Do you want to stop the process?</source>
        <translation>Möchten Sie den Vorgang beenden?</translation>
    </message>
    <message>
        <source>Do you want to stop the current process?</source>
        <translation>Möchten Sie den aktuellen Vorgang beenden?</translation>
    </message>
    <message>
        <source>You can&apos;t resume the process from this point. All the changes will be discarded. </source>
        <translation>Der Vorgang kann an dieser Stelle nicht fortgesetzt werden. Alle Änderungen werden verworfen. </translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Ja</translation>
    </message>
    <message>
        <source>No</source>
        <translation>Nein</translation>
    </message>
    <message>
        <source>Choose Location</source>
        <translation>Speicherort wählen</translation>
    </message>
    <message>
        <source>Repair process completed.
Check &apos;Status&apos; column to view the repair outcome.</source>
        <translation>Reparatur abgeschlossen.
Das Ergebnis sehen Sie in der Spalte &apos;Status&apos;.</translation>
    </message>
    <message>
        <source>Repaired files saved successfully.</source>
        <translation>Reparierte Dateien erfolgreich gespeichert.</translation>
    </message>
    <message>
        <source>Wait while repaired files are being saved.</source>
        <translation>Bitte warten, die reparierten Dateien werden gespeichert.</translation>
    </message>
    <message>
        <source>The chosen folder can&apos;t be found. Choose another folder.</source>
        <translation>Der gewählte Ordner wurde nicht gefunden. Wählen Sie einen anderen Ordner.</translation>
    </message>
    <message numerus="yes">
        <source>%n repaired file(s) could not be saved in the chosen folder. Check that the folder can be written to, or choose another one.</source>
        <translation>
            <numerusform>%n reparierte Datei konnte nicht im gewählten Ordner gespeichert werden. Prüfen Sie, ob der Ordner beschreibbar ist, oder wählen Sie einen anderen.</numerusform>
            <numerusform>%n reparierte Dateien konnten nicht im gewählten Ordner gespeichert werden. Prüfen Sie, ob der Ordner beschreibbar ist, oder wählen Sie einen anderen.</numerusform>
        </translation>
    </message>
    <message>
        <source>Add Videos</source>
        <translation>Videos hinzufügen</translation>
    </message>
    <message>
        <source>Repair</source>
        <translation>Reparieren</translation>
    </message>
    <message>
        <source>Save Repaired Files</source>
        <translation>Reparierte Dateien speichern</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Stopp</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>Hinzufügen</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Entfernen</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Zurück</translation>
    </message>
    <message>
        <source>Add Your Corrupt Videos to Repair</source>
        <translation>Beschädigte Videos zur Reparatur hinzufügen</translation>
    </message>
    <message>
        <source>Repair Your Videos</source>
        <translation>Videos reparieren</translation>
    </message>
    <message>
        <source>Click &apos;Repair&apos; button to fix corrupted videos. This may take a while depending on the number of videos and their size</source>
        <translation>Klicken Sie auf &apos;Reparieren&apos;, um beschädigte Videos zu reparieren. Je nach Anzahl und Größe der Videos kann dies eine Weile dauern.</translation>
    </message>
    <message>
        <source>About</source>
        <translation>Info</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Hilfe</translation>
    </message>
    <message>
        <source>Update</source>
        <translation>Aktualisieren</translation>
    </message>
    <message>
        <source>Do you want to run advance repair on the severely corrupted video before leaving this page?</source>
        <translation>Möchten Sie vor dem Verlassen dieser Seite die Tiefenreparatur für das stark beschädigte Video ausführen?</translation>
    </message>
    <message>
        <source>This action will clear repair results.
Do you want to go back to previous screen?</source>
        <translation>Dadurch werden die Reparaturergebnisse gelöscht.
Möchten Sie zum vorherigen Bildschirm zurückkehren?</translation>
    </message>
    <message>
        <source>Languages</source>
        <translation>Sprachen</translation>
    </message>
    <message>
        <source>More Tools</source>
        <translation>Weitere Tools</translation>
    </message>
    <message>
        <source>Application Running! 
Please halt the current process to Exit.</source>
        <translation>Das Programm arbeitet noch!
Bitte halten Sie den laufenden Vorgang an, um es zu beenden.</translation>
    </message>
    <message>
        <source>Do you want to run advance repair on the severely corrupted files before exiting?</source>
        <translation>Möchten Sie vor dem Beenden die Tiefenreparatur für die stark beschädigten Dateien ausführen?</translation>
    </message>
    <message>
        <source>Are you sure you want to exit?</source>
        <translation>Möchten Sie das Programm wirklich beenden?</translation>
    </message>
    <message>
        <source>Recover Data</source>
        <translation>Daten wiederherstellen</translation>
    </message>
    <message>
        <source>Repair Photo</source>
        <translation>Fotos reparieren</translation>
    </message>
    <message>
        <source>Recover Photo</source>
        <translation>Fotos wiederherstellen</translation>
    </message>
    <message>
        <source>Monitor Drive</source>
        <translation>Laufwerk überwachen</translation>
    </message>
    <message>
        <source>%1 frames</source>
        <translation>%1 Bilder</translation>
    </message>
    <message>
        <source>%1 min %2 s of sound</source>
        <translation>%1 min %2 s Ton</translation>
    </message>
    <message>
        <source>%1 s of sound</source>
        <translation>%1 s Ton</translation>
    </message>
    <message>
        <source>%1 damaged bytes skipped</source>
        <translation>%1 beschädigte Bytes übersprungen</translation>
    </message>
    <message>
        <source>%1 unreadable bytes read as zeros</source>
        <translation>%1 unlesbare Bytes als Nullen gelesen</translation>
    </message>
    <message>
        <source>Adding videos: %1 in the list</source>
        <translation>Videos werden hinzugefügt: %1 in der Liste</translation>
    </message>
    <message>
        <source>Skipped, not videos this program repairs: %1</source>
        <translation>Übersprungen, keine Videos, die dieses Programm repariert: %1</translation>
    </message>
    <message>
        <source>Not found: %1</source>
        <translation>Nicht gefunden: %1</translation>
    </message>
    <message>
        <source>These files can no longer be found and are left out: %1</source>
        <translation>Diese Dateien sind nicht mehr auffindbar und werden ausgelassen: %1</translation>
    </message>
    <message>
        <source>The video player %1 could not be started.</source>
        <translation>Der Videoplayer %1 konnte nicht gestartet werden.</translation>
    </message>
    <message>
        <source>The video player %1 ended at once without showing the file.</source>
        <translation>Der Videoplayer %1 wurde sofort beendet, ohne die Datei zu zeigen.</translation>
    </message>
    <message>
        <source>%1 could not be started.</source>
        <translation>%1 konnte nicht gestartet werden.</translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <source>Reelwright is already running.</source>
        <translation>Reelwright wird bereits ausgeführt.</translation>
    </message>
</context>
<context>
    <name>repairFinishDialog</name>
    <message>
        <source> Repair process completed.</source>
        <translation> Reparatur abgeschlossen.</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>What is a reference file?</source>
        <translation>Was ist eine Referenzdatei?</translation>
    </message>
</context>
</TS>
