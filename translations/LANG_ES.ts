<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es_ES">
<context>
    <name>AdvancedRepairDlg</name>
    <message>
        <source>Next</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Learn More</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Advance Repair</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Use this option to repair severely damaged videos. </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Click &amp;quot;Next&amp;quot; to add a &apos;sample video&apos; of the same format, shot using the same device.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The sample and the damaged video remain unchanged during repair process.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ConfirmDlgClass</name>
    <message>
        <source>Yes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>InfoDlgClass</name>
    <message>
        <source>OK</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>QCheckUpdate</name>
    <message>
        <source>Software Update</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Checking for updates...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No update available.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>QDownloadApp</name>
    <message>
        <source>Software Update</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Downloading Files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>OK</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Time Elapsed: </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source> sec </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source> MB copied) </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Transfer Rate: </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source> KB/sec </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The installer could not be started: </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Update failed 

 Update failed due to partial download.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>QShowUpdate</name>
    <message>
        <source>Update</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>A new minor update </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source> is available. Click Update to proceed further.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>A new major release </source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ReferenceFileDlg</name>
    <message>
        <source>Browse</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Apply to all files of same format.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Repair</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Add a sample video:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Add File</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ReferenceRepairedDlg</name>
    <message>
        <source>Video file repaired successfully!</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>SaveDlgClass</name>
    <message>
        <source>Save repaired file at source location.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save file at custom location.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Browse</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reelwright </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Select Folder</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>StopDlg</name>
    <message>
        <source>Yes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>VideoRepairWin</name>
    <message>
        <source>Reelwright</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reelwright Video Repair</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>✕</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Close</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>□</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>–</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Minimise</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>≡</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Menu</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>About</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Help</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Update</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Add Your Corrupt Videos to Repair</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>+</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Add Videos</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Repair Your Videos</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Click &apos;Repair&apos; button to fix corrupted videos. This may take a while depending on the number of videos and their size</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Select All</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>List of video files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Add</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remove</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Repair</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Repaired files will be saved at the source file location.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>To change location</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Click here</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Repairing selected videos</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This may take a while, depending on the number of videos and their file size. Please wait while the process is completed.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Overall Progress</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>0%</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Back</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Stop</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save Repaired Files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Preview</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>What is a reference file?</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>VideoRepairWindow</name>
    <message>
        <source>Completed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Preview</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Awaiting Action</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Advance Repair</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The sample video can&apos;t be read. Choose another sample video.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Advance Repair Running</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Please wait while the &apos;Advance Repair&apos; process is running.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source> File Name</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source> Path</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source> Size (MB)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source> Modified Date</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source> Created Date</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Add File</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Files already added to list will be skipped.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Repaired files will be saved at the source file location.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>To change location</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>List of video files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No video player was found to preview the file. Install mpv or mplayer and try again.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Processing</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Failed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Aborted</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Repair Process Completed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Click on the &apos;Save Repaired Files&apos; to save all your repaired videos. Click the &apos;Preview&apos; under Action column to preview repaired videos. </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This video is severely damaged. Run advance repair option to repair it before saving.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This video is severely corrupted and cannot be repaired.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>  Path</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source> Status</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source> Action</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Repairing selected videos</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This may take a while, depending on the number of videos and their file size. Please wait while the process is completed.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Queued</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Repairing </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This process will stop after processing the current file.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Do you want to stop the process?</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Do you want to stop the current process?</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>You can&apos;t resume the process from this point. All the changes will be discarded. </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Yes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Choose Location</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Repair process completed.
Check &apos;Status&apos; column to view the repair outcome.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Repaired files saved successfully.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Wait while repaired files are being saved.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The chosen folder can&apos;t be found. Choose another folder.</source>
        <translation type="unfinished"></translation>
    </message>
    <message numerus="yes">
        <source>%n repaired file(s) could not be saved in the chosen folder. Check that the folder can be written to, or choose another one.</source>
        <translation type="unfinished">
            <numerusform></numerusform>
            <numerusform></numerusform>
        </translation>
    </message>
    <message>
        <source>Add Videos</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Repair</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save Repaired Files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Stop</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Add</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remove</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Back</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Add Your Corrupt Videos to Repair</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Repair Your Videos</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Click &apos;Repair&apos; button to fix corrupted videos. This may take a while depending on the number of videos and their size</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>About</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Help</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Update</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Do you want to run advance repair on the severely corrupted video before leaving this page?</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This action will clear repair results.
Do you want to go back to previous screen?</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <source>Reelwright is already running.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>repairFinishDialog</name>
    <message>
        <source> Repair process completed.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>OK</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>What is a reference file?</source>
        <translation type="unfinished"></translation>
    </message>
</context>
</TS>
