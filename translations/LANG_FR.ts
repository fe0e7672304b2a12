<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr" sourcelanguage="en">
<context>
    <name>AboutDlg</name>
    <message>
        <source>About</source>
        <translation>À propos</translation>
    </message>
    <message>
        <source>Version %1</source>
        <translation>Version %1</translation>
    </message>
    <message>
        <source>Running on %1 (%2)</source>
        <translation>Exécuté sur %1 (%2)</translation>
    </message>
    <message>
        <source>Support</source>
        <translation>Assistance</translation>
    </message>
    <message>
        <source>End-User License Agreement</source>
        <translation>Contrat de licence utilisateur final</translation>
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
        <translation>Suivant</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>Learn More</source>
        <translation>En savoir plus</translation>
    </message>
    <message>
        <source>Advance Repair</source>
        <translation>Réparation avancée</translation>
    </message>
    <message>
        <source>Use this option to repair severely damaged videos. </source>
        <translation>Utilisez cette option pour réparer les vidéos gravement endommagées. </translation>
    </message>
    <message>
        <source>Click &amp;quot;Next&amp;quot; to add a &apos;sample video&apos; of the same format, shot using the same device.</source>
        <translation>Cliquez sur &amp;quot;Suivant&amp;quot; pour ajouter une &apos;vidéo d&apos;exemple&apos; du même format, filmée avec le même appareil.</translation>
    </message>
    <message>
        <source>The sample and the damaged video remain unchanged during repair process.</source>
        <translation>La vidéo d&apos;exemple et la vidéo endommagée restent inchangées pendant la réparation.</translation>
    </message>
</context>
<context>
    <name>CloseApplicationDlg</name>
    <message>
        <source>Exit</source>
        <translation>Quitter</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Oui</translation>
    </message>
    <message>
        <source>No</source>
        <translation>Non</translation>
    </message>
    <message>
        <source>Are you sure you want to exit?</source>
        <translation>Voulez-vous vraiment quitter ?</translation>
    </message>
</context>
<context>
    <name>ConfirmDlgClass</name>
    <message>
        <source>Yes</source>
        <translation>Oui</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
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
        <translation>Mise à jour du logiciel</translation>
    </message>
    <message>
        <source>Checking for updates...</source>
        <translation>Recherche de mises à jour...</translation>
    </message>
    <message>
        <source>No update available.</source>
        <translation>Aucune mise à jour disponible.</translation>
    </message>
    <message>
        <source>The update check failed: %1</source>
        <translation>La recherche de mises à jour a échoué : %1</translation>
    </message>
    <message>
        <source>there is no network connection</source>
        <translation>aucune connexion réseau</translation>
    </message>
    <message>
        <source>no update address is set</source>
        <translation>aucune adresse de mise à jour n&apos;est définie</translation>
    </message>
    <message>
        <source>the update address is not valid</source>
        <translation>l&apos;adresse de mise à jour n&apos;est pas valide</translation>
    </message>
    <message>
        <source>the server gave no answer</source>
        <translation>le serveur n&apos;a pas répondu</translation>
    </message>
    <message>
        <source>the server&apos;s answer holds no version</source>
        <translation>la réponse du serveur ne contient aucune version</translation>
    </message>
    <message>
        <source>this copy does not know its own version</source>
        <translation>cette copie ne connaît pas sa propre version</translation>
    </message>
</context>
<context>
    <name>QDownloadApp</name>
    <message>
        <source>Software Update</source>
        <translation>Mise à jour du logiciel</translation>
    </message>
    <message>
        <source>Downloading Files</source>
        <translation>Téléchargement des fichiers</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Time Elapsed: </source>
        <translation>Temps écoulé : </translation>
    </message>
    <message>
        <source> sec </source>
        <translation> s </translation>
    </message>
    <message>
        <source> MB copied) </source>
        <translation> Mo copiés) </translation>
    </message>
    <message>
        <source>Transfer Rate: </source>
        <translation>Débit : </translation>
    </message>
    <message>
        <source> KB/sec </source>
        <translation> Ko/s </translation>
    </message>
    <message>
        <source>The installer could not be started: </source>
        <translation>Le programme d&apos;installation n&apos;a pas pu être lancé : </translation>
    </message>
    <message>
        <source>Update failed 

 Update failed due to partial download.</source>
        <translation>Échec de la mise à jour 

 La mise à jour a échoué car le téléchargement est incomplet.</translation>
    </message>
</context>
<context>
    <name>QShowUpdate</name>
    <message>
        <source>Update</source>
        <translation>Mettre à jour</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>A new minor update </source>
        <translation>Une nouvelle mise à jour mineure </translation>
    </message>
    <message>
        <source> is available. Click Update to proceed further.</source>
        <translation> est disponible. Cliquez sur Mettre à jour pour continuer.</translation>
    </message>
    <message>
        <source>A new major release </source>
        <translation>Une nouvelle version majeure </translation>
    </message>
</context>
<context>
    <name>ReferenceFileDlg</name>
    <message>
        <source>Browse</source>
        <translation>Parcourir</translation>
    </message>
    <message>
        <source>Apply to all files of same format.</source>
        <translation>Appliquer à tous les fichiers du même format.</translation>
    </message>
    <message>
        <source>Repair</source>
        <translation>Réparer</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>Add a sample video:</source>
        <translation>Ajouter une vidéo d&apos;exemple :</translation>
    </message>
    <message>
        <source>Add File</source>
        <translation>Ajouter un fichier</translation>
    </message>
</context>
<context>
    <name>ReferenceRepairedDlg</name>
    <message>
        <source>Video file repaired successfully!</source>
        <translation>Fichier vidéo réparé avec succès !</translation>
    </message>
</context>
<context>
    <name>SaveDlgClass</name>
    <message>
        <source>Save repaired file at source location.</source>
        <translation>Enregistrer le fichier réparé à l&apos;emplacement d&apos;origine.</translation>
    </message>
    <message>
        <source>Save file at custom location.</source>
        <translation>Enregistrer le fichier à un emplacement personnalisé.</translation>
    </message>
    <message>
        <source>Browse</source>
        <translation>Parcourir</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Enregistrer</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>Reelwright </source>
        <translation>Reelwright </translation>
    </message>
    <message>
        <source>Select Folder</source>
        <translation>Sélectionner un dossier</translation>
    </message>
</context>
<context>
    <name>StopDlg</name>
    <message>
        <source>Yes</source>
        <translation>Oui</translation>
    </message>
    <message>
        <source>No</source>
        <translation>Non</translation>
    </message>
    <message>
        <source>Do you want to stop the current process?</source>
        <translation>Voulez-vous arrêter le processus en cours ?</translation>
    </message>
    <message>
        <source>You can&apos;t resume the process from this point. All the changes will be discarded. </source>
        <translation>Vous ne pourrez pas reprendre le processus à partir de ce point. Toutes les modifications seront perdues. </translation>
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
        <translation>Reelwright Réparation vidéo</translation>
    </message>
    <message>
        <source>✕</source>
        <translation>✕</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Fermer</translation>
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
        <translation>Réduire</translation>
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
        <translation>À propos</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Aide</translation>
    </message>
    <message>
        <source>Update</source>
        <translation>Mettre à jour</translation>
    </message>
    <message>
        <source>Add Your Corrupt Videos to Repair</source>
        <translation>Ajoutez vos vidéos corrompues à réparer</translation>
    </message>
    <message>
        <source>+</source>
        <translation>+</translation>
    </message>
    <message>
        <source>Add Videos</source>
        <translation>Ajouter des vidéos</translation>
    </message>
    <message>
        <source>Repair Your Videos</source>
        <translation>Réparez vos vidéos</translation>
    </message>
    <message>
        <source>Click &apos;Repair&apos; button to fix corrupted videos. This may take a while depending on the number of videos and their size</source>
        <translation>Cliquez sur &apos;Réparer&apos; pour corriger les vidéos corrompues. Cela peut prendre un moment selon le nombre de vidéos et leur taille.</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>Tout sélectionner</translation>
    </message>
    <message>
        <source>List of video files</source>
        <translation>Liste des fichiers vidéo</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>Ajouter</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Supprimer</translation>
    </message>
    <message>
        <source>Repair</source>
        <translation>Réparer</translation>
    </message>
    <message>
        <source>Repaired files will be saved at the source file location.</source>
        <translation>Les fichiers réparés seront enregistrés à l&apos;emplacement du fichier source.</translation>
    </message>
    <message>
        <source>To change location</source>
        <translation>Pour changer d&apos;emplacement</translation>
    </message>
    <message>
        <source>Click here</source>
        <translation>Cliquez ici</translation>
    </message>
    <message>
        <source>Repairing selected videos</source>
        <translation>Réparation des vidéos sélectionnées</translation>
    </message>
    <message>
        <source>This may take a while, depending on the number of videos and their file size. Please wait while the process is completed.</source>
        <translation>Cela peut prendre un moment selon le nombre de vidéos et la taille des fichiers. Veuillez patienter jusqu&apos;à la fin du processus.</translation>
    </message>
    <message>
        <source>Overall Progress</source>
        <translation>Progression globale</translation>
    </message>
    <message>
        <source>0%</source>
        <translation>0%</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Retour</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Arrêter</translation>
    </message>
    <message>
        <source>Save Repaired Files</source>
        <translation>Enregistrer les fichiers réparés</translation>
    </message>
    <message>
        <source>Preview</source>
        <translation>Aperçu</translation>
    </message>
    <message>
        <source>What is a reference file?</source>
        <translation>Qu&apos;est-ce qu&apos;un fichier de référence ?</translation>
    </message>
</context>
<context>
    <name>VideoRepairWindow</name>
    <message>
        <source>Completed</source>
        <translation>Terminé</translation>
    </message>
    <message>
        <source>Preview</source>
        <translation>Aperçu</translation>
    </message>
    <message>
        <source>Awaiting Action</source>
        <translation>Action requise</translation>
    </message>
    <message>
        <source>Advance Repair</source>
        <translation>Rép. avancée</translation>
    </message>
    <message>
        <source>The sample video can&apos;t be read. Choose another sample video.</source>
        <translation>La vidéo d&apos;exemple ne peut pas être lue. Choisissez une autre vidéo d&apos;exemple.</translation>
    </message>
    <message>
        <source>Advance Repair Running</source>
        <translation>Réparation avancée en cours</translation>
    </message>
    <message>
        <source>Please wait while the &apos;Advance Repair&apos; process is running.</source>
        <translation>Veuillez patienter pendant la &apos;Réparation avancée&apos;.</translation>
    </message>
    <message>
        <source> File Name</source>
        <translation> Nom du fichier</translation>
    </message>
    <message>
        <source> Path</source>
        <translation> Chemin</translation>
    </message>
    <message>
        <source> Size (MB)</source>
        <translation> Taille (Mo)</translation>
    </message>
    <message>
        <source> Modified Date</source>
        <translation> Date de modification</translation>
    </message>
    <message>
        <source> Created Date</source>
        <translation> Date de création</translation>
    </message>
    <message>
        <source>Add File</source>
        <translation>Ajouter un fichier</translation>
    </message>
    <message>
        <source>Files already added to list will be skipped.</source>
        <translation>Les fichiers déjà ajoutés à la liste seront ignorés.</translation>
    </message>
    <message>
        <source>Repaired files will be saved at the source file location.</source>
        <translation>Les fichiers réparés seront enregistrés à l&apos;emplacement du fichier source.</translation>
    </message>
    <message>
        <source>To change location</source>
        <translation>Pour changer d&apos;emplacement</translation>
    </message>
    <message>
        <source>List of video files</source>
        <translation>Liste des fichiers vidéo</translation>
    </message>
    <message>
        <source>No video player was found to preview the file. Install mpv or mplayer and try again.</source>
        <translation>Aucun lecteur vidéo n&apos;a été trouvé pour l&apos;aperçu. Installez mpv ou mplayer puis réessayez.</translation>
    </message>
    <message>
        <source>Processing</source>
        <translation>En cours</translation>
    </message>
    <message>
        <source>Failed</source>
        <translation>Échec</translation>
    </message>
    <message>
        <source>Aborted</source>
        <translation>Interrompu</translation>
    </message>
    <message>
        <source>Repair Process Completed</source>
        <translation>Réparation terminée</translation>
    </message>
    <message>
        <source>Click on the &apos;Save Repaired Files&apos; to save all your repaired videos. Click the &apos;Preview&apos; under Action column to preview repaired videos. </source>
        <translation>Cliquez sur &apos;Enregistrer les fichiers réparés&apos; pour enregistrer toutes vos vidéos réparées. Cliquez sur &apos;Aperçu&apos; dans la colonne Action pour les visionner. </translation>
    </message>
    <message>
        <source>This video is severely damaged. Run advance repair option to repair it before saving.</source>
        <translation>Cette vidéo est gravement endommagée. Lancez la réparation avancée avant de l&apos;enregistrer.</translation>
    </message>
    <message>
        <source>This video is severely corrupted and cannot be repaired.</source>
        <translation>Cette vidéo est gravement corrompue et ne peut pas être réparée.</translation>
    </message>
    <message>
        <source>  Path</source>
        <translation>  Chemin</translation>
    </message>
    <message>
        <source> Status</source>
        <translation> État</translation>
    </message>
    <message>
        <source> Action</source>
        <translation> Action</translation>
    </message>
    <message>
        <source>Repairing selected videos</source>
        <translation>Réparation des vidéos sélectionnées</translation>
    </message>
    <message>
        <source>This may take a while, depending on the number of videos and their file size. Please wait while the process is completed.</source>
        <translation>Cela peut prendre un moment selon le nombre de vidéos et la taille des fichiers. Veuillez patienter jusqu&apos;à la fin du processus.</translation>
    </message>
    <message>
        <source>Queued</source>
        <translation>En attente</translation>
    </message>
    <message>
        <source>Repairing </source>
        <translation>Réparation : </translation>
    </message>
    <message>
        <source>This process will stop after processing the current file.</source>
        <translation>Le processus s&apos;arrêtera après le fichier en cours.</translation>
    </message>
    <message>
        <source>Do you want to stop the process?</source>
        <translation>Voulez-vous arrêter le processus ?</translation>
    </message>
    <message>
        <source>Do you want to stop the current process?</source>
        <translation>Voulez-vous arrêter le processus en cours ?</translation>
    </message>
    <message>
        <source>You can&apos;t resume the process from this point. All the changes will be discarded. </source>
        <translation>Vous ne pourrez pas reprendre le processus à partir de ce point. Toutes les modifications seront perdues. </translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Oui</translation>
    </message>
    <message>
        <source>No</source>
        <translation>Non</translation>
    </message>
    <message>
        <source>Choose Location</source>
        <translation>Choisir l&apos;emplacement</translation>
    </message>
    <message>
        <source>Repair process completed.
Check &apos;Status&apos; column to view the repair outcome.</source>
        <translation>Réparation terminée.
Consultez la colonne &apos;État&apos; pour voir le résultat.</translation>
    </message>
    <message>
        <source>Repaired files saved successfully.</source>
        <translation>Fichiers réparés enregistrés avec succès.</translation>
    </message>
    <message>
        <source>Wait while repaired files are being saved.</source>
        <translation>Veuillez patienter pendant l&apos;enregistrement des fichiers réparés.</translation>
    </message>
    <message>
        <source>The chosen folder can&apos;t be found. Choose another folder.</source>
        <translation>Le dossier choisi est introuvable. Choisissez un autre dossier.</translation>
    </message>
    <message numerus="yes">
        <source>%n repaired file(s) could not be saved in the chosen folder. Check that the folder can be written to, or choose another one.</source>
        <translation>
            <numerusform>%n fichier réparé n&apos;a pas pu être enregistré dans le dossier choisi. Vérifiez que le dossier est accessible en écriture ou choisissez-en un autre.</numerusform>
            <numerusform>%n fichiers réparés n&apos;ont pas pu être enregistrés dans le dossier choisi. Vérifiez que le dossier est accessible en écriture ou choisissez-en un autre.</numerusform>
        </translation>
    </message>
    <message>
        <source>Add Videos</source>
        <translation>Ajouter des vidéos</translation>
    </message>
    <message>
        <source>Repair</source>
        <translation>Réparer</translation>
    </message>
    <message>
        <source>Save Repaired Files</source>
        <translation>Enregistrer les fichiers réparés</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Arrêter</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>Ajouter</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Supprimer</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Retour</translation>
    </message>
    <message>
        <source>Add Your Corrupt Videos to Repair</source>
        <translation>Ajoutez vos vidéos corrompues à réparer</translation>
    </message>
    <message>
        <source>Repair Your Videos</source>
        <translation>Réparez vos vidéos</translation>
    </message>
    <message>
        <source>Click &apos;Repair&apos; button to fix corrupted videos. This may take a while depending on the number of videos and their size</source>
        <translation>Cliquez sur &apos;Réparer&apos; pour corriger les vidéos corrompues. Cela peut prendre un moment selon le nombre de vidéos et leur taille.</translation>
    </message>
    <message>
        <source>About</source>
        <translation>À propos</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Aide</translation>
    </message>
    <message>
        <source>Update</source>
        <translation>Mettre à jour</translation>
    </message>
    <message>
        <source>Do you want to run advance repair on the severely corrupted video before leaving this page?</source>
        <translation>Voulez-vous lancer la réparation avancée sur la vidéo gravement corrompue avant de quitter cette page ?</translation>
    </message>
    <message>
        <source>This action will clear repair results.
Do you want to go back to previous screen?</source>
        <translation>Cette action effacera les résultats de la réparation.
Voulez-vous revenir à l&apos;écran précédent ?</translation>
    </message>
    <message>
        <source>Languages</source>
        <translation>Langues</translation>
    </message>
    <message>
        <source>More Tools</source>
        <translation>Plus d&apos;outils</translation>
    </message>
    <message>
        <source>Application Running! 
Please halt the current process to Exit.</source>
        <translation>L&apos;application est en cours d&apos;exécution !
Veuillez arrêter le traitement en cours pour quitter.</translation>
    </message>
    <message>
        <source>Do you want to run advance repair on the severely corrupted files before exiting?</source>
        <translation>Voulez-vous lancer la réparation avancée des fichiers gravement endommagés avant de quitter ?</translation>
    </message>
    <message>
        <source>Are you sure you want to exit?</source>
        <translation>Voulez-vous vraiment quitter ?</translation>
    </message>
    <message>
        <source>Recover Data</source>
        <translation>Récupérer des données</translation>
    </message>
    <message>
        <source>Repair Photo</source>
        <translation>Réparer des photos</translation>
    </message>
    <message>
        <source>Recover Photo</source>
        <translation>Récupérer des photos</translation>
    </message>
    <message>
        <source>Monitor Drive</source>
        <translation>Surveiller le disque</translation>
    </message>
    <message>
        <source>%1 frames</source>
        <translation>%1 images</translation>
    </message>
    <message>
        <source>%1 min %2 s of sound</source>
        <translation>%1 min %2 s de son</translation>
    </message>
    <message>
        <source>%1 s of sound</source>
        <translation>%1 s de son</translation>
    </message>
    <message>
        <source>%1 damaged bytes skipped</source>
        <translation>%1 octets endommagés ignorés</translation>
    </message>
    <message>
        <source>%1 unreadable bytes read as zeros</source>
        <translation>%1 octets illisibles lus comme des zéros</translation>
    </message>
    <message>
        <source>Adding videos: %1 in the list</source>
        <translation>Ajout des vidéos : %1 dans la liste</translation>
    </message>
    <message>
        <source>Skipped, not videos this program repairs: %1</source>
        <translation>Ignorés, pas des vidéos que ce programme répare : %1</translation>
    </message>
    <message>
        <source>Not found: %1</source>
        <translation>Introuvable : %1</translation>
    </message>
    <message>
        <source>These files can no longer be found and are left out: %1</source>
        <translation>Ces fichiers sont introuvables et sont exclus : %1</translation>
    </message>
    <message>
        <source>The video player %1 could not be started.</source>
        <translation>Le lecteur vidéo %1 n&apos;a pas pu être lancé.</translation>
    </message>
    <message>
        <source>The video player %1 ended at once without showing the file.</source>
        <translation>Le lecteur vidéo %1 s&apos;est arrêté aussitôt sans afficher le fichier.</translation>
    </message>
    <message>
        <source>%1 could not be started.</source>
        <translation>%1 n&apos;a pas pu être lancé.</translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <source>Reelwright is already running.</source>
        <translation>Reelwright est déjà en cours d&apos;exécution.</translation>
    </message>
</context>
<context>
    <name>repairFinishDialog</name>
    <message>
        <source> Repair process completed.</source>
        <translation> Réparation terminée.</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>What is a reference file?</source>
        <translation>Qu&apos;est-ce qu&apos;un fichier de référence ?</translation>
    </message>
</context>
</TS>
