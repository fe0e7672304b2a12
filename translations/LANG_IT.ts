<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="it" sourcelanguage="en">
<context>
    <name>AboutDlg</name>
    <message>
        <source>About</source>
        <translation>Informazioni</translation>
    </message>
    <message>
        <source>Version %1</source>
        <translation>Versione %1</translation>
    </message>
    <message>
        <source>Running on %1 (%2)</source>
        <translation>In esecuzione su %1 (%2)</translation>
    </message>
    <message>
        <source>Support</source>
        <translation>Assistenza</translation>
    </message>
    <message>
        <source>End-User License Agreement</source>
        <translation>Contratto di licenza con l&apos;utente finale</translation>
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
        <translation>Avanti</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annulla</translation>
    </message>
    <message>
        <source>Learn More</source>
        <translation>Ulteriori informazioni</translation>
    </message>
    <message>
        <source>Advance Repair</source>
        <translation>Riparazione avanzata</translation>
    </message>
    <message>
        <source>Use this option to repair severely damaged videos. </source>
        <translation>Usa questa opzione per riparare i video gravemente danneggiati. </translation>
    </message>
    <message>
        <source>Click &amp;quot;Next&amp;quot; to add a &apos;sample video&apos; of the same format, shot using the same device.</source>
        <translation>Fai clic su &amp;quot;Avanti&amp;quot; per aggiungere un &apos;video di esempio&apos; dello stesso formato, girato con lo stesso dispositivo.</translation>
    </message>
    <message>
        <source>The sample and the damaged video remain unchanged during repair process.</source>
        <translation>Il video di esempio e il video danneggiato restano invariati durante la riparazione.</translation>
    </message>
</context>
<context>
    <name>CloseApplicationDlg</name>
    <message>
        <source>Exit</source>
        <translation>Esci</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Sì</translation>
    </message>
    <message>
        <source>No</source>
        <translation>No</translation>
    </message>
    <message>
        <source>Are you sure you want to exit?</source>
        <translation>Uscire davvero?</translation>
    </message>
</context>
<context>
    <name>ConfirmDlgClass</name>
    <message>
        <source>Yes</source>
        <translation>Sì</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annulla</translation>
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
        <translation>Aggiornamento software</translation>
    </message>
    <message>
        <source>Checking for updates...</source>
        <translation>Ricerca di aggiornamenti...</translation>
    </message>
    <message>
        <source>No update available.</source>
        <translation>Nessun aggiornamento disponibile.</translation>
    </message>
    <message>
        <source>The update check failed: %1</source>
        <translation>Il controllo degli aggiornamenti non è riuscito: %1</translation>
    </message>
    <message>
        <source>there is no network connection</source>
        <translation>nessuna connessione di rete</translation>
    </message>
    <message>
        <source>no update address is set</source>
        <translation>nessun indirizzo di aggiornamento impostato</translation>
    </message>
    <message>
        <source>the update address is not valid</source>
        <translation>l&apos;indirizzo di aggiornamento non è valido</translation>
    </message>
    <message>
        <source>the server gave no answer</source>
        <translation>il server non ha risposto</translation>
    </message>
    <message>
        <source>the server&apos;s answer holds no version</source>
        <translation>la risposta del server non contiene alcuna versione</translation>
    </message>
    <message>
        <source>this copy does not know its own version</source>
        <translation>questa copia non conosce la propria versione</translation>
    </message>
</context>
<context>
    <name>QDownloadApp</name>
    <message>
        <source>Software Update</source>
        <translation>Aggiornamento software</translation>
    </message>
    <message>
        <source>Downloading Files</source>
        <translation>Download dei file</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Time Elapsed: </source>
        <translation>Tempo trascorso: </translation>
    </message>
    <message>
        <source> sec </source>
        <translation> s </translation>
    </message>
    <message>
        <source> MB copied) </source>
        <translation> MB copiati) </translation>
    </message>
    <message>
        <source>Transfer Rate: </source>
        <translation>Velocità di trasferimento: </translation>
    </message>
    <message>
        <source> KB/sec </source>
        <translation> KB/s </translation>
    </message>
    <message>
        <source>The installer could not be started: </source>
        <translation>Impossibile avviare il programma di installazione: </translation>
    </message>
    <message>
        <source>Update failed 

 Update failed due to partial download.</source>
        <translation>Aggiornamento non riuscito 

 L&apos;aggiornamento non è riuscito perché il download è incompleto.</translation>
    </message>
</context>
<context>
    <name>QShowUpdate</name>
    <message>
        <source>Update</source>
        <translation>Aggiorna</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annulla</translation>
    </message>
    <message>
        <source>A new minor update </source>
        <translation>Un nuovo aggiornamento minore </translation>
    </message>
    <message>
        <source> is available. Click Update to proceed further.</source>
        <translation> è disponibile. Fai clic su Aggiorna per continuare.</translation>
    </message>
    <message>
        <source>A new major release </source>
        <translation>Una nuova versione principale </translation>
    </message>
</context>
<context>
    <name>ReferenceFileDlg</name>
    <message>
        <source>Browse</source>
        <translation>Sfoglia</translation>
    </message>
    <message>
        <source>Apply to all files of same format.</source>
        <translation>Applica a tutti i file dello stesso formato.</translation>
    </message>
    <message>
        <source>Repair</source>
        <translation>Ripara</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annulla</translation>
    </message>
    <message>
        <source>Add a sample video:</source>
        <translation>Aggiungi un video di esempio:</translation>
    </message>
    <message>
        <source>Add File</source>
        <translation>Aggiungi file</translation>
    </message>
</context>
<context>
    <name>ReferenceRepairedDlg</name>
    <message>
        <source>Video file repaired successfully!</source>
        <translation>File video riparato correttamente!</translation>
    </message>
</context>
<context>
    <name>SaveDlgClass</name>
    <message>
        <source>Save repaired file at source location.</source>
        <translation>Salva il file riparato nella posizione di origine.</translation>
    </message>
    <message>
        <source>Save file at custom location.</source>
        <translation>Salva il file in una posizione personalizzata.</translation>
    </message>
    <message>
        <source>Browse</source>
        <translation>Sfoglia</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Salva</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annulla</translation>
    </message>
    <message>
        <source>Reelwright </source>
        <translation>Reelwright </translation>
    </message>
    <message>
        <source>Select Folder</source>
        <translation>Seleziona cartella</translation>
    </message>
</context>
<context>
    <name>StopDlg</name>
    <message>
        <source>Yes</source>
        <translation>Sì</translation>
    </message>
    <message>
        <source>No</source>
        <translation>No</translation>
    </message>
    <message>
        <source>Do you want to stop the current process?</source>
        <translation>Vuoi interrompere il processo in corso?</translation>
    </message>
    <message>
        <source>You can&apos;t resume the process from this point. All the changes will be discarded. </source>
        <translation>Non potrai riprendere il processo da questo punto. Tutte le modifiche andranno perse. </translation>
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
        <translation>Reelwright Riparazione video</translation>
    </message>
    <message>
        <source>✕</source>
        <translation>✕</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Chiudi</translation>
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
        <translation>Riduci a icona</translation>
    </message>
    <message>
        <source>≡</source>
        <translation>≡</translation>
    </message>
    <message>
        <source>Menu</source>
        <translation>Menu</translation>
    </message>
    <message>
        <source>About</source>
        <translation>Informazioni</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Guida</translation>
    </message>
    <message>
        <source>Update</source>
        <translation>Aggiorna</translation>
    </message>
    <message>
        <source>Add Your Corrupt Videos to Repair</source>
        <translation>Aggiungi i video danneggiati da riparare</translation>
    </message>
    <message>
        <source>+</source>
        <translation>+</translation>
    </message>
    <message>
        <source>Add Videos</source>
        <translation>Aggiungi video</translation>
    </message>
    <message>
        <source>Repair Your Videos</source>
        <translation>Ripara i tuoi video</translation>
    </message>
    <message>
        <source>Click &apos;Repair&apos; button to fix corrupted videos. This may take a while depending on the number of videos and their size</source>
        <translation>Fai clic su &apos;Ripara&apos; per correggere i video danneggiati. L&apos;operazione può richiedere tempo a seconda del numero di video e delle loro dimensioni.</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>Seleziona tutto</translation>
    </message>
    <message>
        <source>List of video files</source>
        <translation>Elenco dei file video</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>Aggiungi</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Rimuovi</translation>
    </message>
    <message>
        <source>Repair</source>
        <translation>Ripara</translation>
    </message>
    <message>
        <source>Repaired files will be saved at the source file location.</source>
        <translation>I file riparati verranno salvati nella posizione del file di origine.</translation>
    </message>
    <message>
        <source>To change location</source>
        <translation>Per cambiare posizione</translation>
    </message>
    <message>
        <source>Click here</source>
        <translation>Fai clic qui</translation>
    </message>
    <message>
        <source>Repairing selected videos</source>
        <translation>Riparazione dei video selezionati</translation>
    </message>
    <message>
        <source>This may take a while, depending on the number of videos and their file size. Please wait while the process is completed.</source>
        <translation>L&apos;operazione può richiedere tempo a seconda del numero di video e delle dimensioni dei file. Attendi il completamento del processo.</translation>
    </message>
    <message>
        <source>Overall Progress</source>
        <translation>Avanzamento complessivo</translation>
    </message>
    <message>
        <source>0%</source>
        <translation>0%</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Indietro</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Interrompi</translation>
    </message>
    <message>
        <source>Save Repaired Files</source>
        <translation>Salva file riparati</translation>
    </message>
    <message>
        <source>Preview</source>
        <translation>Anteprima</translation>
    </message>
    <message>
        <source>What is a reference file?</source>
        <translation>Che cos&apos;è un file di riferimento?</translation>
    </message>
</context>
<context>
    <name>VideoRepairWindow</name>
    <message>
        <source>Completed</source>
        <translation>Completato</translation>
    </message>
    <message>
        <source>Preview</source>
        <translation>Anteprima</translation>
    </message>
    <message>
        <source>Awaiting Action</source>
        <translation>In attesa</translation>
    </message>
    <message>
        <source>Advance Repair</source>
        <translation>Rip. avanzata</translation>
    </message>
    <message>
        <source>The sample video can&apos;t be read. Choose another sample video.</source>
        <translation>Impossibile leggere il video di esempio. Scegli un altro video di esempio.</translation>
    </message>
    <message>
        <source>Advance Repair Running</source>
        <translation>Riparazione avanzata in corso</translation>
    </message>
    <message>
        <source>Please wait while the &apos;Advance Repair&apos; process is running.</source>
        <translation>Attendi mentre è in corso la &apos;Riparazione avanzata&apos;.</translation>
    </message>
    <message>
        <source> File Name</source>
        <translation> Nome file</translation>
    </message>
    <message>
        <source> Path</source>
        <translation> Percorso</translation>
    </message>
    <message>
        <source> Size (MB)</source>
        <translation> Dimensione (MB)</translation>
    </message>
    <message>
        <source> Modified Date</source>
        <translation> Data modifica</translation>
    </message>
    <message>
        <source> Created Date</source>
        <translation> Data creazione</translation>
    </message>
    <message>
        <source>Add File</source>
        <translation>Aggiungi file</translation>
    </message>
    <message>
        <source>Files already added to list will be skipped.</source>
        <translation>I file già presenti nell&apos;elenco verranno ignorati.</translation>
    </message>
    <message>
        <source>Repaired files will be saved at the source file location.</source>
        <translation>I file riparati verranno salvati nella posizione del file di origine.</translation>
    </message>
    <message>
        <source>To change location</source>
        <translation>Per cambiare posizione</translation>
    </message>
    <message>
        <source>List of video files</source>
        <translation>Elenco dei file video</translation>
    </message>
    <message>
        <source>No video player was found to preview the file. Install mpv or mplayer and try again.</source>
        <translation>Nessun lettore video trovato per l&apos;anteprima. Installa mpv o mplayer e riprova.</translation>
    </message>
    <message>
        <source>Processing</source>
        <translation>In elaborazione</translation>
    </message>
    <message>
        <source>Failed</source>
        <translation>Non riuscito</translation>
    </message>
    <message>
        <source>Aborted</source>
        <translation>Interrotto</translation>
    </message>
    <message>
        <source>Repair Process Completed</source>
        <translation>Riparazione completata</translation>
    </message>
    <message>
        <source>Click on the &apos;Save Repaired Files&apos; to save all your repaired videos. Click the &apos;Preview&apos; under Action column to preview repaired videos. </source>
        <translation>Fai clic su &apos;Salva file riparati&apos; per salvare tutti i video riparati. Fai clic su &apos;Anteprima&apos; nella colonna Azione per visualizzarli. </translation>
    </message>
    <message>
        <source>This video is severely damaged. Run advance repair option to repair it before saving.</source>
        <translation>Questo video è gravemente danneggiato. Esegui la riparazione avanzata prima di salvarlo.</translation>
    </message>
    <message>
        <source>This video is severely corrupted and cannot be repaired.</source>
        <translation>Questo video è gravemente danneggiato e non può essere riparato.</translation>
    </message>
    <message>
        <source>  Path</source>
        <translation>  Percorso</translation>
    </message>
    <message>
        <source> Status</source>
        <translation> Stato</translation>
    </message>
    <message>
        <source> Action</source>
        <translation> Azione</translation>
    </message>
    <message>
        <source>Repairing selected videos</source>
        <translation>Riparazione dei video selezionati</translation>
    </message>
    <message>
        <source>This may take a while, depending on the number of videos and their file size. Please wait while the process is completed.</source>
        <translation>L&apos;operazione può richiedere tempo a seconda del numero di video e delle dimensioni dei file. Attendi il completamento del processo.</translation>
    </message>
    <message>
        <source>Queued</source>
        <translation>In coda</translation>
    </message>
    <message>
        <source>Repairing </source>
        <translation>Riparazione: </translation>
    </message>
    <message>
        <source>This process will stop after processing the current file.</source>
        <translation>Il processo si fermerà dopo il file corrente.</translation>
    </message>
    <message>
        <source>Do you want to stop the process?</source>
        <translation>Vuoi interrompere il processo?</translation>
    </message>
    <message>
        <source>Do you want to stop the current process?</source>
        <translation>Vuoi interrompere il processo in corso?</translation>
    </message>
    <message>
        <source>You can&apos;t resume the process from this point. All the changes will be discarded. </source>
        <translation>Non potrai riprendere il processo da questo punto. Tutte le modifiche andranno perse. </translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Sì</translation>
    </message>
    <message>
        <source>No</source>
        <translation>No</translation>
    </message>
    <message>
        <source>Choose Location</source>
        <translation>Scegli posizione</translation>
    </message>
    <message>
        <source>Repair process completed.
Check &apos;Status&apos; column to view the repair outcome.</source>
        <translation>Riparazione completata.
Controlla la colonna &apos;Stato&apos; per vedere l&apos;esito.</translation>
    </message>
    <message>
        <source>Repaired files saved successfully.</source>
        <translation>File riparati salvati correttamente.</translation>
    </message>
    <message>
        <source>Wait while repaired files are being saved.</source>
        <translation>Attendi il salvataggio dei file riparati.</translation>
    </message>
    <message>
        <source>The chosen folder can&apos;t be found. Choose another folder.</source>
        <translation>Impossibile trovare la cartella scelta. Scegli un&apos;altra cartella.</translation>
    </message>
    <message numerus="yes">
        <source>%n repaired file(s) could not be saved in the chosen folder. Check that the folder can be written to, or choose another one.</source>
        <translation>
            <numerusform>Impossibile salvare %n file riparato nella cartella scelta. Verifica che la cartella sia scrivibile o scegline un&apos;altra.</numerusform>
            <numerusform>Impossibile salvare %n file riparati nella cartella scelta. Verifica che la cartella sia scrivibile o scegline un&apos;altra.</numerusform>
        </translation>
    </message>
    <message>
        <source>Add Videos</source>
        <translation>Aggiungi video</translation>
    </message>
    <message>
        <source>Repair</source>
        <translation>Ripara</translation>
    </message>
    <message>
        <source>Save Repaired Files</source>
        <translation>Salva file riparati</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Interrompi</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>Aggiungi</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Rimuovi</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Indietro</translation>
    </message>
    <message>
        <source>Add Your Corrupt Videos to Repair</source>
        <translation>Aggiungi i video danneggiati da riparare</translation>
    </message>
    <message>
        <source>Repair Your Videos</source>
        <translation>Ripara i tuoi video</translation>
    </message>
    <message>
        <source>Click &apos;Repair&apos; button to fix corrupted videos. This may take a while depending on the number of videos and their size</source>
        <translation>Fai clic su &apos;Ripara&apos; per correggere i video danneggiati. L&apos;operazione può richiedere tempo a seconda del numero di video e delle loro dimensioni.</translation>
    </message>
    <message>
        <source>About</source>
        <translation>Informazioni</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Guida</translation>
    </message>
    <message>
        <source>Update</source>
        <translation>Aggiorna</translation>
    </message>
    <message>
        <source>Do you want to run advance repair on the severely corrupted video before leaving this page?</source>
        <translation>Vuoi eseguire la riparazione avanzata sul video gravemente danneggiato prima di lasciare questa pagina?</translation>
    </message>
    <message>
        <source>This action will clear repair results.
Do you want to go back to previous screen?</source>
        <translation>Questa azione cancellerà i risultati della riparazione.
Vuoi tornare alla schermata precedente?</translation>
    </message>
    <message>
        <source>Languages</source>
        <translation>Lingue</translation>
    </message>
    <message>
        <source>More Tools</source>
        <translation>Altri strumenti</translation>
    </message>
    <message>
        <source>Application Running! 
Please halt the current process to Exit.</source>
        <translation>Applicazione in esecuzione!
Interrompere il processo in corso per uscire.</translation>
    </message>
    <message>
        <source>Do you want to run advance repair on the severely corrupted files before exiting?</source>
        <translation>Eseguire la riparazione avanzata dei file gravemente danneggiati prima di uscire?</translation>
    </message>
    <message>
        <source>Are you sure you want to exit?</source>
        <translation>Uscire davvero?</translation>
    </message>
    <message>
        <source>Recover Data</source>
        <translation>Recupera dati</translation>
    </message>
    <message>
        <source>Repair Photo</source>
        <translation>Ripara foto</translation>
    </message>
    <message>
        <source>Recover Photo</source>
        <translation>Recupera foto</translation>
    </message>
    <message>
        <source>Monitor Drive</source>
        <translation>Monitora unità</translation>
    </message>
    <message>
        <source>%1 frames</source>
        <translation>%1 fotogrammi</translation>
    </message>
    <message>
        <source>%1 min %2 s of sound</source>
        <translation>%1 min %2 s di audio</translation>
    </message>
    <message>
        <source>%1 s of sound</source>
        <translation>%1 s di audio</translation>
    </message>
    <message>
        <source>%1 damaged bytes skipped</source>
        <translation>%1 byte danneggiati saltati</translation>
    </message>
    <message>
        <source>%1 unreadable bytes read as zeros</source>
        <translation>%1 byte illeggibili letti come zeri</translation>
    </message>
    <message>
        <source>Adding videos: %1 in the list</source>
        <translation>Aggiunta dei video: %1 nell&apos;elenco</translation>
    </message>
    <message>
        <source>Skipped, not videos this program repairs: %1</source>
        <translation>Ignorati, non sono video che questo programma ripara: %1</translation>
    </message>
    <message>
        <source>Not found: %1</source>
        <translation>Non trovato: %1</translation>
    </message>
    <message>
        <source>These files can no longer be found and are left out: %1</source>
        <translation>Questi file non si trovano più e vengono esclusi: %1</translation>
    </message>
    <message>
        <source>The video player %1 could not be started.</source>
        <translation>Impossibile avviare il lettore video %1.</translation>
    </message>
    <message>
        <source>The video player %1 ended at once without showing the file.</source>
        <translation>Il lettore video %1 si è chiuso subito senza mostrare il file.</translation>
    </message>
    <message>
        <source>%1 could not be started.</source>
        <translation>Impossibile avviare %1.</translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <source>Reelwright is already running.</source>
        <translation>Reelwright è già in esecuzione.</translation>
    </message>
</context>
<context>
    <name>repairFinishDialog</name>
    <message>
        <source> Repair process completed.</source>
        <translation> Riparazione completata.</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>What is a reference file?</source>
        <translation>Che cos&apos;è un file di riferimento?</translation>
    </message>
</context>
</TS>
