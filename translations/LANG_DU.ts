<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="nl" sourcelanguage="en">
<context>
    <name>AboutDlg</name>
    <message>
        <source>About</source>
        <translation>Over</translation>
    </message>
    <message>
        <source>Version %1</source>
        <translation>Versie %1</translation>
    </message>
    <message>
        <source>Running on %1 (%2)</source>
        <translation>Draait op %1 (%2)</translation>
    </message>
    <message>
        <source>Support</source>
        <translation>Ondersteuning</translation>
    </message>
    <message>
        <source>End-User License Agreement</source>
        <translation>Licentieovereenkomst voor eindgebruikers</translation>
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
        <translation>Volgende</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuleren</translation>
    </message>
    <message>
        <source>Learn More</source>
        <translation>Meer informatie</translation>
    </message>
    <message>
        <source>Advance Repair</source>
        <translation>Diep herstel</translation>
    </message>
    <message>
        <source>Use this option to repair severely damaged videos. </source>
        <translation>Gebruik deze optie om zwaar beschadigde video&apos;s te herstellen. </translation>
    </message>
    <message>
        <source>Click &amp;quot;Next&amp;quot; to add a &apos;sample video&apos; of the same format, shot using the same device.</source>
        <translation>Klik op &amp;quot;Volgende&amp;quot; om een &apos;voorbeeldvideo&apos; in hetzelfde formaat toe te voegen, opgenomen met hetzelfde apparaat.</translation>
    </message>
    <message>
        <source>The sample and the damaged video remain unchanged during repair process.</source>
        <translation>De voorbeeldvideo en de beschadigde video blijven tijdens het herstel ongewijzigd.</translation>
    </message>
</context>
<context>
    <name>CloseApplicationDlg</name>
    <message>
        <source>Exit</source>
        <translation>Afsluiten</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Ja</translation>
    </message>
    <message>
        <source>No</source>
        <translation>Nee</translation>
    </message>
    <message>
        <source>Are you sure you want to exit?</source>
        <translation>Weet u zeker dat u wilt afsluiten?</translation>
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
        <translation>Annuleren</translation>
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
        <translation>Software-update</translation>
    </message>
    <message>
        <source>Checking for updates...</source>
        <translation>Controleren op updates...</translation>
    </message>
    <message>
        <source>No update available.</source>
        <translation>Geen update beschikbaar.</translation>
    </message>
    <message>
        <source>The update check failed: %1</source>
        <translation>Controleren op updates is mislukt: %1</translation>
    </message>
    <message>
        <source>there is no network connection</source>
        <translation>er is geen netwerkverbinding</translation>
    </message>
    <message>
        <source>no update address is set</source>
        <translation>er is geen update-adres ingesteld</translation>
    </message>
    <message>
        <source>the update address is not valid</source>
        <translation>het update-adres is ongeldig</translation>
    </message>
    <message>
        <source>the server gave no answer</source>
        <translation>de server gaf geen antwoord</translation>
    </message>
    <message>
        <source>the server&apos;s answer holds no version</source>
        <translation>het antwoord van de server bevat geen versie</translation>
    </message>
    <message>
        <source>this copy does not know its own version</source>
        <translation>deze kopie kent haar eigen versie niet</translation>
    </message>
</context>
<context>
    <name>QDownloadApp</name>
    <message>
        <source>Software Update</source>
        <translation>Software-update</translation>
    </message>
    <message>
        <source>Downloading Files</source>
        <translation>Bestanden downloaden</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Time Elapsed: </source>
        <translation>Verstreken tijd: </translation>
    </message>
    <message>
        <source> sec </source>
        <translation> s </translation>
    </message>
    <message>
        <source> MB copied) </source>
        <translation> MB gekopieerd) </translation>
    </message>
    <message>
        <source>Transfer Rate: </source>
        <translation>Overdrachtssnelheid: </translation>
    </message>
    <message>
        <source> KB/sec </source>
        <translation> KB/s </translation>
    </message>
    <message>
        <source>The installer could not be started: </source>
        <translation>Het installatieprogramma kon niet worden gestart: </translation>
    </message>
    <message>
        <source>Update failed 

 Update failed due to partial download.</source>
        <translation>Update mislukt 

 De update is mislukt door een onvolledige download.</translation>
    </message>
</context>
<context>
    <name>QShowUpdate</name>
    <message>
        <source>Update</source>
        <translation>Bijwerken</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuleren</translation>
    </message>
    <message>
        <source>A new minor update </source>
        <translation>Een nieuwe kleine update </translation>
    </message>
    <message>
        <source> is available. Click Update to proceed further.</source>
        <translation> is beschikbaar. Klik op Bijwerken om verder te gaan.</translation>
    </message>
    <message>
        <source>A new major release </source>
        <translation>Een nieuwe hoofdversie </translation>
    </message>
</context>
<context>
    <name>ReferenceFileDlg</name>
    <message>
        <source>Browse</source>
        <translation>Bladeren</translation>
    </message>
    <message>
        <source>Apply to all files of same format.</source>
        <translation>Toepassen op alle bestanden van hetzelfde formaat.</translation>
    </message>
    <message>
        <source>Repair</source>
        <translation>Repareren</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuleren</translation>
    </message>
    <message>
        <source>Add a sample video:</source>
        <translation>Voorbeeldvideo toevoegen:</translation>
    </message>
    <message>
        <source>Add File</source>
        <translation>Bestand toevoegen</translation>
    </message>
</context>
<context>
    <name>ReferenceRepairedDlg</name>
    <message>
        <source>Video file repaired successfully!</source>
        <translation>Videobestand is hersteld!</translation>
    </message>
</context>
<context>
    <name>SaveDlgClass</name>
    <message>
        <source>Save repaired file at source location.</source>
        <translation>Hersteld bestand opslaan op de bronlocatie.</translation>
    </message>
    <message>
        <source>Save file at custom location.</source>
        <translation>Bestand opslaan op een aangepaste locatie.</translation>
    </message>
    <message>
        <source>Browse</source>
        <translation>Bladeren</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Opslaan</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuleren</translation>
    </message>
    <message>
        <source>Reelwright </source>
        <translation>Reelwright </translation>
    </message>
    <message>
        <source>Select Folder</source>
        <translation>Map selecteren</translation>
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
        <translation>Nee</translation>
    </message>
    <message>
        <source>Do you want to stop the current process?</source>
        <translation>Wilt u het huidige proces stoppen?</translation>
    </message>
    <message>
        <source>You can&apos;t resume the process from this point. All the changes will be discarded. </source>
        <translation>U kunt het proces vanaf dit punt niet hervatten. Alle wijzigingen gaan verloren. </translation>
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
        <translation>Reelwright Videoherstel</translation>
    </message>
    <message>
        <source>✕</source>
        <translation>✕</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Sluiten</translation>
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
        <translation>Minimaliseren</translation>
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
        <translation>Over</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Help</translation>
    </message>
    <message>
        <source>Update</source>
        <translation>Bijwerken</translation>
    </message>
    <message>
        <source>Add Your Corrupt Videos to Repair</source>
        <translation>Voeg uw beschadigde video&apos;s toe om te herstellen</translation>
    </message>
    <message>
        <source>+</source>
        <translation>+</translation>
    </message>
    <message>
        <source>Add Videos</source>
        <translation>Video&apos;s toevoegen</translation>
    </message>
    <message>
        <source>Repair Your Videos</source>
        <translation>Herstel uw video&apos;s</translation>
    </message>
    <message>
        <source>Click &apos;Repair&apos; button to fix corrupted videos. This may take a while depending on the number of videos and their size</source>
        <translation>Klik op &apos;Repareren&apos; om beschadigde video&apos;s te herstellen. Dit kan even duren, afhankelijk van het aantal video&apos;s en hun grootte.</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>Alles selecteren</translation>
    </message>
    <message>
        <source>List of video files</source>
        <translation>Lijst met videobestanden</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>Toevoegen</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Verwijderen</translation>
    </message>
    <message>
        <source>Repair</source>
        <translation>Repareren</translation>
    </message>
    <message>
        <source>Repaired files will be saved at the source file location.</source>
        <translation>Herstelde bestanden worden opgeslagen op de locatie van het bronbestand.</translation>
    </message>
    <message>
        <source>To change location</source>
        <translation>Locatie wijzigen</translation>
    </message>
    <message>
        <source>Click here</source>
        <translation>Klik hier</translation>
    </message>
    <message>
        <source>Repairing selected videos</source>
        <translation>Geselecteerde video&apos;s worden hersteld</translation>
    </message>
    <message>
        <source>This may take a while, depending on the number of videos and their file size. Please wait while the process is completed.</source>
        <translation>Dit kan even duren, afhankelijk van het aantal video&apos;s en hun bestandsgrootte. Wacht tot het proces is voltooid.</translation>
    </message>
    <message>
        <source>Overall Progress</source>
        <translation>Totale voortgang</translation>
    </message>
    <message>
        <source>0%</source>
        <translation>0%</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Terug</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Stoppen</translation>
    </message>
    <message>
        <source>Save Repaired Files</source>
        <translation>Herstelde bestanden opslaan</translation>
    </message>
    <message>
        <source>Preview</source>
        <translation>Voorbeeld</translation>
    </message>
    <message>
        <source>What is a reference file?</source>
        <translation>Wat is een referentiebestand?</translation>
    </message>
</context>
<context>
    <name>VideoRepairWindow</name>
    <message>
        <source>Completed</source>
        <translation>Voltooid</translation>
    </message>
    <message>
        <source>Preview</source>
        <translation>Voorbeeld</translation>
    </message>
    <message>
        <source>Awaiting Action</source>
        <translation>Wacht op actie</translation>
    </message>
    <message>
        <source>Advance Repair</source>
        <translation>Diep herstel</translation>
    </message>
    <message>
        <source>The sample video can&apos;t be read. Choose another sample video.</source>
        <translation>De voorbeeldvideo kan niet worden gelezen. Kies een andere voorbeeldvideo.</translation>
    </message>
    <message>
        <source>Advance Repair Running</source>
        <translation>Diep herstel bezig</translation>
    </message>
    <message>
        <source>Please wait while the &apos;Advance Repair&apos; process is running.</source>
        <translation>Wacht terwijl het &apos;Diep herstel&apos; bezig is.</translation>
    </message>
    <message>
        <source> File Name</source>
        <translation> Bestandsnaam</translation>
    </message>
    <message>
        <source> Path</source>
        <translation> Pad</translation>
    </message>
    <message>
        <source> Size (MB)</source>
        <translation> Grootte (MB)</translation>
    </message>
    <message>
        <source> Modified Date</source>
        <translation> Wijzigingsdatum</translation>
    </message>
    <message>
        <source> Created Date</source>
        <translation> Aanmaakdatum</translation>
    </message>
    <message>
        <source>Add File</source>
        <translation>Bestand toevoegen</translation>
    </message>
    <message>
        <source>Files already added to list will be skipped.</source>
        <translation>Bestanden die al in de lijst staan, worden overgeslagen.</translation>
    </message>
    <message>
        <source>Repaired files will be saved at the source file location.</source>
        <translation>Herstelde bestanden worden opgeslagen op de locatie van het bronbestand.</translation>
    </message>
    <message>
        <source>To change location</source>
        <translation>Locatie wijzigen</translation>
    </message>
    <message>
        <source>List of video files</source>
        <translation>Lijst met videobestanden</translation>
    </message>
    <message>
        <source>No video player was found to preview the file. Install mpv or mplayer and try again.</source>
        <translation>Er is geen videospeler gevonden voor het voorbeeld. Installeer mpv of mplayer en probeer het opnieuw.</translation>
    </message>
    <message>
        <source>Processing</source>
        <translation>Bezig</translation>
    </message>
    <message>
        <source>Failed</source>
        <translation>Mislukt</translation>
    </message>
    <message>
        <source>Aborted</source>
        <translation>Afgebroken</translation>
    </message>
    <message>
        <source>Repair Process Completed</source>
        <translation>Herstel voltooid</translation>
    </message>
    <message>
        <source>Click on the &apos;Save Repaired Files&apos; to save all your repaired videos. Click the &apos;Preview&apos; under Action column to preview repaired videos. </source>
        <translation>Klik op &apos;Herstelde bestanden opslaan&apos; om al uw herstelde video&apos;s op te slaan. Klik op &apos;Voorbeeld&apos; in de kolom Actie om ze te bekijken. </translation>
    </message>
    <message>
        <source>This video is severely damaged. Run advance repair option to repair it before saving.</source>
        <translation>Deze video is zwaar beschadigd. Voer vóór het opslaan het diepe herstel uit.</translation>
    </message>
    <message>
        <source>This video is severely corrupted and cannot be repaired.</source>
        <translation>Deze video is zwaar beschadigd en kan niet worden hersteld.</translation>
    </message>
    <message>
        <source>  Path</source>
        <translation>  Pad</translation>
    </message>
    <message>
        <source> Status</source>
        <translation> Status</translation>
    </message>
    <message>
        <source> Action</source>
        <translation> Actie</translation>
    </message>
    <message>
        <source>Repairing selected videos</source>
        <translation>Geselecteerde video&apos;s worden hersteld</translation>
    </message>
    <message>
        <source>This may take a while, depending on the number of videos and their file size. Please wait while the process is completed.</source>
        <translation>Dit kan even duren, afhankelijk van het aantal video&apos;s en hun bestandsgrootte. Wacht tot het proces is voltooid.</translation>
    </message>
    <message>
        <source>Queued</source>
        <translation>In wachtrij</translation>
    </message>
    <message>
        <source>Repairing </source>
        <translation>Herstellen: </translation>
    </message>
    <message>
        <source>This process will stop after processing the current file.</source>
        <translation>Het proces stopt na het huidige bestand.</translation>
    </message>
    <message>
        <source>Do you want to stop the process?</source>
        <translation>Wilt u het proces stoppen?</translation>
    </message>
    <message>
        <source>Do you want to stop the current process?</source>
        <translation>Wilt u het huidige proces stoppen?</translation>
    </message>
    <message>
        <source>You can&apos;t resume the process from this point. All the changes will be discarded. </source>
        <translation>U kunt het proces vanaf dit punt niet hervatten. Alle wijzigingen gaan verloren. </translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Ja</translation>
    </message>
    <message>
        <source>No</source>
        <translation>Nee</translation>
    </message>
    <message>
        <source>Choose Location</source>
        <translation>Locatie kiezen</translation>
    </message>
    <message>
        <source>Repair process completed.
Check &apos;Status&apos; column to view the repair outcome.</source>
        <translation>Herstel voltooid.
Bekijk de kolom &apos;Status&apos; voor het resultaat.</translation>
    </message>
    <message>
        <source>Repaired files saved successfully.</source>
        <translation>Herstelde bestanden zijn opgeslagen.</translation>
    </message>
    <message>
        <source>Wait while repaired files are being saved.</source>
        <translation>Wacht terwijl de herstelde bestanden worden opgeslagen.</translation>
    </message>
    <message>
        <source>The chosen folder can&apos;t be found. Choose another folder.</source>
        <translation>De gekozen map is niet gevonden. Kies een andere map.</translation>
    </message>
    <message numerus="yes">
        <source>%n repaired file(s) could not be saved in the chosen folder. Check that the folder can be written to, or choose another one.</source>
        <translation>
            <numerusform>%n hersteld bestand kon niet in de gekozen map worden opgeslagen. Controleer of de map beschrijfbaar is of kies een andere.</numerusform>
            <numerusform>%n herstelde bestanden konden niet in de gekozen map worden opgeslagen. Controleer of de map beschrijfbaar is of kies een andere.</numerusform>
        </translation>
    </message>
    <message>
        <source>Add Videos</source>
        <translation>Video&apos;s toevoegen</translation>
    </message>
    <message>
        <source>Repair</source>
        <translation>Repareren</translation>
    </message>
    <message>
        <source>Save Repaired Files</source>
        <translation>Herstelde bestanden opslaan</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Stoppen</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>Toevoegen</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Verwijderen</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Terug</translation>
    </message>
    <message>
        <source>Add Your Corrupt Videos to Repair</source>
        <translation>Voeg uw beschadigde video&apos;s toe om te herstellen</translation>
    </message>
    <message>
        <source>Repair Your Videos</source>
        <translation>Herstel uw video&apos;s</translation>
    </message>
    <message>
        <source>Click &apos;Repair&apos; button to fix corrupted videos. This may take a while depending on the number of videos and their size</source>
        <translation>Klik op &apos;Repareren&apos; om beschadigde video&apos;s te herstellen. Dit kan even duren, afhankelijk van het aantal video&apos;s en hun grootte.</translation>
    </message>
    <message>
        <source>About</source>
        <translation>Over</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Help</translation>
    </message>
    <message>
        <source>Update</source>
        <translation>Bijwerken</translation>
    </message>
    <message>
        <source>Do you want to run advance repair on the severely corrupted video before leaving this page?</source>
        <translation>Wilt u diep herstel uitvoeren op de zwaar beschadigde video voordat u deze pagina verlaat?</translation>
    </message>
    <message>
        <source>This action will clear repair results.
Do you want to go back to previous screen?</source>
        <translation>Hiermee worden de herstelresultaten gewist.
Wilt u teruggaan naar het vorige scherm?</translation>
    </message>
    <message>
        <source>Languages</source>
        <translation>Talen</translation>
    </message>
    <message>
        <source>More Tools</source>
        <translation>Meer hulpmiddelen</translation>
    </message>
    <message>
        <source>Application Running! 
Please halt the current process to Exit.</source>
        <translation>Het programma is bezig!
Stop het huidige proces om af te sluiten.</translation>
    </message>
    <message>
        <source>Do you want to run advance repair on the severely corrupted files before exiting?</source>
        <translation>Wilt u vóór het afsluiten diep herstel uitvoeren op de zwaar beschadigde bestanden?</translation>
    </message>
    <message>
        <source>Are you sure you want to exit?</source>
        <translation>Weet u zeker dat u wilt afsluiten?</translation>
    </message>
    <message>
        <source>Recover Data</source>
        <translation>Gegevens herstellen</translation>
    </message>
    <message>
        <source>Repair Photo</source>
        <translation>Foto&apos;s repareren</translation>
    </message>
    <message>
        <source>Recover Photo</source>
        <translation>Foto&apos;s herstellen</translation>
    </message>
    <message>
        <source>Monitor Drive</source>
        <translation>Schijf bewaken</translation>
    </message>
    <message>
        <source>%1 frames</source>
        <translation>%1 beelden</translation>
    </message>
    <message>
        <source>%1 min %2 s of sound</source>
        <translation>%1 min %2 s geluid</translation>
    </message>
    <message>
        <source>%1 s of sound</source>
        <translation>%1 s geluid</translation>
    </message>
    <message>
        <source>%1 damaged bytes skipped</source>
        <translation>%1 beschadigde bytes overgeslagen</translation>
    </message>
    <message>
        <source>%1 unreadable bytes read as zeros</source>
        <translation>%1 onleesbare bytes als nullen gelezen</translation>
    </message>
    <message>
        <source>Adding videos: %1 in the list</source>
        <translation>Video&apos;s worden toegevoegd: %1 in de lijst</translation>
    </message>
    <message>
        <source>Skipped, not videos this program repairs: %1</source>
        <translation>Overgeslagen, geen video&apos;s die dit programma herstelt: %1</translation>
    </message>
    <message>
        <source>Not found: %1</source>
        <translation>Niet gevonden: %1</translation>
    </message>
    <message>
        <source>These files can no longer be found and are left out: %1</source>
        <translation>Deze bestanden zijn niet meer te vinden en worden overgeslagen: %1</translation>
    </message>
    <message>
        <source>The video player %1 could not be started.</source>
        <translation>De videospeler %1 kon niet worden gestart.</translation>
    </message>
    <message>
        <source>The video player %1 ended at once without showing the file.</source>
        <translation>De videospeler %1 stopte meteen zonder het bestand te tonen.</translation>
    </message>
    <message>
        <source>%1 could not be started.</source>
        <translation>%1 kon niet worden gestart.</translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <source>Reelwright is already running.</source>
        <translation>Reelwright is al actief.</translation>
    </message>
</context>
<context>
    <name>repairFinishDialog</name>
    <message>
        <source> Repair process completed.</source>
        <translation> Herstel voltooid.</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>What is a reference file?</source>
        <translation>Wat is een referentiebestand?</translation>
    </message>
</context>
</TS>
