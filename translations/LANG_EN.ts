<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="en">
<context>
    <name>AboutDlg</name>
    <message>
        <source>About</source>
        <translation>About</translation>
    </message>
    <message>
        <source>Version %1</source>
        <translation>Version %1</translation>
    </message>
    <message>
        <source>Running on %1 (%2)</source>
        <translation>Running on %1 (%2)</translation>
    </message>
    <message>
        <source>Support</source>
        <translation>Support</translation>
    </message>
    <message>
        <source>End-User License Agreement</source>
        <translation>End-User License Agreement</translation>
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
        <translation>Next</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>Learn More</source>
        <translation>Learn More</translation>
    </message>
    <message>
        <source>Advance Repair</source>
        <translation>Advance Repair</translation>
    </message>
    <message>
        <source>Use this option to repair severely damaged videos. </source>
        <translation>Use this option to repair severely damaged videos. </translation>
    </message>
    <message>
        <source>Click &amp;quot;Next&amp;quot; to add a &apos;sample video&apos; of the same format, shot using the same device.</source>
        <translation>Click &amp;quot;Next&amp;quot; to add a &apos;sample video&apos; of the same format, shot using the same device.</translation>
    </message>
    <message>
        <source>The sample and the damaged video remain unchanged during repair process.</source>
        <translation>The sample and the damaged video remain unchanged during repair process.</translation>
    </message>
</context>
<context>
    <name>CloseApplicationDlg</name>
    <message>
        <source>Exit</source>
        <translation>Exit</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Yes</translation>
    </message>
    <message>
        <source>No</source>
        <translation>No</translation>
    </message>
    <message>
        <source>Are you sure you want to exit?</source>
        <translation>Are you sure you want to exit?</translation>
    </message>
</context>
<context>
    <name>ConfirmDlgClass</name>
    <message>
        <source>Yes</source>
        <translation>Yes</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancel</translation>
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
        <translation>Software Update</translation>
    </message>
    <message>
        <source>Checking for updates...</source>
        <translation>Checking for updates...</translation>
    </message>
    <message>
        <source>No update available.</source>
        <translation>No update available.</translation>
    </message>
    <message>
        <source>The update check failed: %1</source>
        <translation>The update check failed: %1</translation>
    </message>
    <message>
        <source>there is no network connection</source>
        <translation>there is no network connection</translation>
    </message>
    <message>
        <source>no update address is set</source>
        <translation>no update address is set</translation>
    </message>
    <message>
        <source>the update address is not valid</source>
        <translation>the update address is not valid</translation>
    </message>
    <message>
        <source>the server gave no answer</source>
        <translation>the server gave no answer</translation>
    </message>
    <message>
        <source>the server&apos;s answer holds no version</source>
        <translation>the server&apos;s answer holds no version</translation>
    </message>
    <message>
        <source>this copy does not know its own version</source>
        <translation>this copy does not know its own version</translation>
    </message>
</context>
<context>
    <name>QDownloadApp</name>
    <message>
        <source>Software Update</source>
        <translation>Software Update</translation>
    </message>
    <message>
        <source>Downloading Files</source>
        <translation>Downloading Files</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Time Elapsed: </source>
        <translation>Time Elapsed: </translation>
    </message>
    <message>
        <source> sec </source>
        <translation> sec </translation>
    </message>
    <message>
        <source> MB copied) </source>
        <translation> MB copied) </translation>
    </message>
    <message>
        <source>Transfer Rate: </source>
        <translation>Transfer Rate: </translation>
    </message>
    <message>
        <source> KB/sec </source>
        <translation> KB/sec </translation>
    </message>
    <message>
        <source>The installer could not be started: </source>
        <translation>The installer could not be started: </translation>
    </message>
    <message>
        <source>Update failed 

 Update failed due to partial download.</source>
        <translation>Update failed 

 Update failed due to partial download.</translation>
    </message>
</context>
<context>
    <name>QShowUpdate</name>
    <message>
        <source>Update</source>
        <translation>Update</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>A new minor update </source>
        <translation>A new minor update </translation>
    </message>
    <message>
        <source> is available. Click Update to proceed further.</source>
        <translation> is available. Click Update to proceed further.</translation>
    </message>
    <message>
        <source>A new major release </source>
        <translation>A new major release </translation>
    </message>
</context>
<context>
    <name>ReferenceFileDlg</name>
    <message>
        <source>Browse</source>
        <translation>Browse</translation>
    </message>
    <message>
        <source>Apply to all files of same format.</source>
        <translation>Apply to all files of same format.</translation>
    </message>
    <message>
        <source>Repair</source>
        <translation>Repair</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>Add a sample video:</source>
        <translation>Add a sample video:</translation>
    </message>
    <message>
        <source>Add File</source>
        <translation>Add File</translation>
    </message>
</context>
<context>
    <name>ReferenceRepairedDlg</name>
    <message>
        <source>Video file repaired successfully!</source>
        <translation>Video file repaired successfully!</translation>
    </message>
</context>
<context>
    <name>SaveDlgClass</name>
    <message>
        <source>Save repaired file at source location.</source>
        <translation>Save repaired file at source location.</translation>
    </message>
    <message>
        <source>Save file at custom location.</source>
        <translation>Save file at custom location.</translation>
    </message>
    <message>
        <source>Browse</source>
        <translation>Browse</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Save</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>Reelwright </source>
        <translation>Reelwright </translation>
    </message>
    <message>
        <source>Select Folder</source>
        <translation>Select Folder</translation>
    </message>
</context>
<context>
    <name>StopDlg</name>
    <message>
        <source>Yes</source>
        <translation>Yes</translation>
    </message>
    <message>
        <source>No</source>
        <translation>No</translation>
    </message>
    <message>
        <source>Do you want to stop the current process?</source>
        <translation>Do you want to stop the current process?</translation>
    </message>
    <message>
        <source>You can&apos;t resume the process from this point. All the changes will be discarded. </source>
        <translation>You can&apos;t resume the process from this point. All the changes will be discarded. </translation>
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
        <translation>Reelwright Video Repair</translation>
    </message>
    <message>
        <source>✕</source>
        <translation>✕</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Close</translation>
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
        <translation>Minimise</translation>
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
        <translation>About</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Help</translation>
    </message>
    <message>
        <source>Update</source>
        <translation>Update</translation>
    </message>
    <message>
        <source>Add Your Corrupt Videos to Repair</source>
        <translation>Add Your Corrupt Videos to Repair</translation>
    </message>
    <message>
        <source>+</source>
        <translation>+</translation>
    </message>
    <message>
        <source>Add Videos</source>
        <translation>Add Videos</translation>
    </message>
    <message>
        <source>Repair Your Videos</source>
        <translation>Repair Your Videos</translation>
    </message>
    <message>
        <source>Click &apos;Repair&apos; button to fix corrupted videos. This may take a while depending on the number of videos and their size</source>
        <translation>Click &apos;Repair&apos; button to fix corrupted videos. This may take a while depending on the number of videos and their size</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>Select All</translation>
    </message>
    <message>
        <source>List of video files</source>
        <translation>List of video files</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>Add</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Remove</translation>
    </message>
    <message>
        <source>Repair</source>
        <translation>Repair</translation>
    </message>
    <message>
        <source>Repaired files will be saved at the source file location.</source>
        <translation>Repaired files will be saved at the source file location.</translation>
    </message>
    <message>
        <source>To change location</source>
        <translation>To change location</translation>
    </message>
    <message>
        <source>Click here</source>
        <translation>Click here</translation>
    </message>
    <message>
        <source>Repairing selected videos</source>
        <translation>Repairing selected videos</translation>
    </message>
    <message>
        <source>This may take a while, depending on the number of videos and their file size. Please wait while the process is completed.</source>
        <translation>This may take a while, depending on the number of videos and their file size. Please wait while the process is completed.</translation>
    </message>
    <message>
        <source>Overall Progress</source>
        <translation>Overall Progress</translation>
    </message>
    <message>
        <source>0%</source>
        <translation>0%</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Back</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Stop</translation>
    </message>
    <message>
        <source>Save Repaired Files</source>
        <translation>Save Repaired Files</translation>
    </message>
    <message>
        <source>Preview</source>
        <translation>Preview</translation>
    </message>
    <message>
        <source>What is a reference file?</source>
        <translation>What is a reference file?</translation>
    </message>
</context>
<context>
    <name>VideoRepairWindow</name>
    <message>
        <source>Completed</source>
        <translation>Completed</translation>
    </message>
    <message>
        <source>Preview</source>
        <translation>Preview</translation>
    </message>
    <message>
        <source>Awaiting Action</source>
        <translation>Awaiting Action</translation>
    </message>
    <message>
        <source>Advance Repair</source>
        <translation>Advance Repair</translation>
    </message>
    <message>
        <source>The sample video can&apos;t be read. Choose another sample video.</source>
        <translation>The sample video can&apos;t be read. Choose another sample video.</translation>
    </message>
    <message>
        <source>Advance Repair Running</source>
        <translation>Advance Repair Running</translation>
    </message>
    <message>
        <source>Please wait while the &apos;Advance Repair&apos; process is running.</source>
        <translation>Please wait while the &apos;Advance Repair&apos; process is running.</translation>
    </message>
    <message>
        <source> File Name</source>
        <translation> File Name</translation>
    </message>
    <message>
        <source> Path</source>
        <translation> Path</translation>
    </message>
    <message>
        <source> Size (MB)</source>
        <translation> Size (MB)</translation>
    </message>
    <message>
        <source> Modified Date</source>
        <translation> Modified Date</translation>
    </message>
    <message>
        <source> Created Date</source>
        <translation> Created Date</translation>
    </message>
    <message>
        <source>Add File</source>
        <translation>Add File</translation>
    </message>
    <message>
        <source>Files already added to list will be skipped.</source>
        <translation>Files already added to list will be skipped.</translation>
    </message>
    <message>
        <source>Repaired files will be saved at the source file location.</source>
        <translation>Repaired files will be saved at the source file location.</translation>
    </message>
    <message>
        <source>To change location</source>
        <translation>To change location</translation>
    </message>
    <message>
        <source>List of video files</source>
        <translation>List of video files</translation>
    </message>
    <message>
        <source>No video player was found to preview the file. Install mpv or mplayer and try again.</source>
        <translation>No video player was found to preview the file. Install mpv or mplayer and try again.</translation>
    </message>
    <message>
        <source>Processing</source>
        <translation>Processing</translation>
    </message>
    <message>
        <source>Failed</source>
        <translation>Failed</translation>
    </message>
    <message>
        <source>Aborted</source>
        <translation>Aborted</translation>
    </message>
    <message>
        <source>Repair Process Completed</source>
        <translation>Repair Process Completed</translation>
    </message>
    <message>
        <source>Click on the &apos;Save Repaired Files&apos; to save all your repaired videos. Click the &apos;Preview&apos; under Action column to preview repaired videos. </source>
        <translation>Click on the &apos;Save Repaired Files&apos; to save all your repaired videos. Click the &apos;Preview&apos; under Action column to preview repaired videos. </translation>
    </message>
    <message>
        <source>This video is severely damaged. Run advance repair option to repair it before saving.</source>
        <translation>This video is severely damaged. Run advance repair option to repair it before saving.</translation>
    </message>
    <message>
        <source>This video is severely corrupted and cannot be repaired.</source>
        <translation>This video is severely corrupted and cannot be repaired.</translation>
    </message>
    <message>
        <source>  Path</source>
        <translation>  Path</translation>
    </message>
    <message>
        <source> Status</source>
        <translation> Status</translation>
    </message>
    <message>
        <source> Action</source>
        <translation> Action</translation>
    </message>
    <message>
        <source>Repairing selected videos</source>
        <translation>Repairing selected videos</translation>
    </message>
    <message>
        <source>This may take a while, depending on the number of videos and their file size. Please wait while the process is completed.</source>
        <translation>This may take a while, depending on the number of videos and their file size. Please wait while the process is completed.</translation>
    </message>
    <message>
        <source>Queued</source>
        <translation>Queued</translation>
    </message>
    <message>
        <source>Repairing </source>
        <translation>Repairing </translation>
    </message>
    <message>
        <source>This process will stop after processing the current file.</source>
        <translation>This process will stop after processing the current file.</translation>
    </message>
    <message>
        <source>Do you want to stop the process?</source>
        <translation>Do you want to stop the process?</translation>
    </message>
    <message>
        <source>Do you want to stop the current process?</source>
        <translation>Do you want to stop the current process?</translation>
    </message>
    <message>
        <source>You can&apos;t resume the process from this point. All the changes will be discarded. </source>
        <translation>You can&apos;t resume the process from this point. All the changes will be discarded. </translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Yes</translation>
    </message>
    <message>
        <source>No</source>
        <translation>No</translation>
    </message>
    <message>
        <source>Choose Location</source>
        <translation>Choose Location</translation>
    </message>
    <message>
        <source>Repair process completed.
Check &apos;Status&apos; column to view the repair outcome.</source>
        <translation>Repair process completed.
Check &apos;Status&apos; column to view the repair outcome.</translation>
    </message>
    <message>
        <source>Repaired files saved successfully.</source>
        <translation>Repaired files saved successfully.</translation>
    </message>
    <message>
        <source>Wait while repaired files are being saved.</source>
        <translation>Wait while repaired files are being saved.</translation>
    </message>
    <message>
        <source>The chosen folder can&apos;t be found. Choose another folder.</source>
        <translation>The chosen folder can&apos;t be found. Choose another folder.</translation>
    </message>
    <message numerus="yes">
        <source>%n repaired file(s) could not be saved in the chosen folder. Check that the folder can be written to, or choose another one.</source>
        <translation>
            <numerusform>%n repaired file could not be saved in the chosen folder. Check that the folder can be written to, or choose another one.</numerusform>
            <numerusform>%n repaired files could not be saved in the chosen folder. Check that the folder can be written to, or choose another one.</numerusform>
        </translation>
    </message>
    <message>
        <source>Add Videos</source>
        <translation>Add Videos</translation>
    </message>
    <message>
        <source>Repair</source>
        <translation>Repair</translation>
    </message>
    <message>
        <source>Save Repaired Files</source>
        <translation>Save Repaired Files</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Stop</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>Add</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Remove</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Back</translation>
    </message>
    <message>
        <source>Add Your Corrupt Videos to Repair</source>
        <translation>Add Your Corrupt Videos to Repair</translation>
    </message>
    <message>
        <source>Repair Your Videos</source>
        <translation>Repair Your Videos</translation>
    </message>
    <message>
        <source>Click &apos;Repair&apos; button to fix corrupted videos. This may take a while depending on the number of videos and their size</source>
        <translation>Click &apos;Repair&apos; button to fix corrupted videos. This may take a while depending on the number of videos and their size</translation>
    </message>
    <message>
        <source>About</source>
        <translation>About</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Help</translation>
    </message>
    <message>
        <source>Update</source>
        <translation>Update</translation>
    </message>
    <message>
        <source>Do you want to run advance repair on the severely corrupted video before leaving this page?</source>
        <translation>Do you want to run advance repair on the severely corrupted video before leaving this page?</translation>
    </message>
    <message>
        <source>This action will clear repair results.
Do you want to go back to previous screen?</source>
        <translation>This action will clear repair results.
Do you want to go back to previous screen?</translation>
    </message>
    <message>
        <source>Languages</source>
        <translation>Languages</translation>
    </message>
    <message>
        <source>More Tools</source>
        <translation>More Tools</translation>
    </message>
    <message>
        <source>Application Running! 
Please halt the current process to Exit.</source>
        <translation>Application Running! 
Please halt the current process to Exit.</translation>
    </message>
    <message>
        <source>Do you want to run advance repair on the severely corrupted files before exiting?</source>
        <translation>Do you want to run advance repair on the severely corrupted files before exiting?</translation>
    </message>
    <message>
        <source>Are you sure you want to exit?</source>
        <translation>Are you sure you want to exit?</translation>
    </message>
    <message>
        <source>Recover Data</source>
        <translation>Recover Data</translation>
    </message>
    <message>
        <source>Repair Photo</source>
        <translation>Repair Photo</translation>
    </message>
    <message>
        <source>Recover Photo</source>
        <translation>Recover Photo</translation>
    </message>
    <message>
        <source>Monitor Drive</source>
        <translation>Monitor Drive</translation>
    </message>
    <message>
        <source>%1 frames</source>
        <translation>%1 frames</translation>
    </message>
    <message>
        <source>%1 min %2 s of sound</source>
        <translation>%1 min %2 s of sound</translation>
    </message>
    <message>
        <source>%1 s of sound</source>
        <translation>%1 s of sound</translation>
    </message>
    <message>
        <source>%1 damaged bytes skipped</source>
        <translation>%1 damaged bytes skipped</translation>
    </message>
    <message>
        <source>%1 unreadable bytes read as zeros</source>
        <translation>%1 unreadable bytes read as zeros</translation>
    </message>
    <message>
        <source>Adding videos: %1 in the list</source>
        <translation>Adding videos: %1 in the list</translation>
    </message>
    <message>
        <source>Skipped, not videos this program repairs: %1</source>
        <translation>Skipped, not videos this program repairs: %1</translation>
    </message>
    <message>
        <source>Not found: %1</source>
        <translation>Not found: %1</translation>
    </message>
    <message>
        <source>These files can no longer be found and are left out: %1</source>
        <translation>These files can no longer be found and are left out: %1</translation>
    </message>
    <message>
        <source>The video player %1 could not be started.</source>
        <translation>The video player %1 could not be started.</translation>
    </message>
    <message>
        <source>The video player %1 ended at once without showing the file.</source>
        <translation>The video player %1 ended at once without showing the file.</translation>
    </message>
    <message>
        <source>%1 could not be started.</source>
        <translation>%1 could not be started.</translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <source>Reelwright is already running.</source>
        <translation>Reelwright is already running.</translation>
    </message>
</context>
<context>
    <name>repairFinishDialog</name>
    <message>
        <source> Repair process completed.</source>
        <translation> Repair process completed.</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>What is a reference file?</source>
        <translation>What is a reference file?</translation>
    </message>
</context>
</TS>
