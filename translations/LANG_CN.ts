<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN" sourcelanguage="en">
<context>
    <name>AboutDlg</name>
    <message>
        <source>About</source>
        <translation>关于</translation>
    </message>
    <message>
        <source>Version %1</source>
        <translation>版本 %1</translation>
    </message>
    <message>
        <source>Running on %1 (%2)</source>
        <translation>运行于 %1 (%2)</translation>
    </message>
    <message>
        <source>Support</source>
        <translation>支持</translation>
    </message>
    <message>
        <source>End-User License Agreement</source>
        <translation>最终用户许可协议</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>确定</translation>
    </message>
</context>
<context>
    <name>AdvancedRepairDlg</name>
    <message>
        <source>Next</source>
        <translation>下一步</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Learn More</source>
        <translation>了解更多</translation>
    </message>
    <message>
        <source>Advance Repair</source>
        <translation>高级修复</translation>
    </message>
    <message>
        <source>Use this option to repair severely damaged videos. </source>
        <translation>使用此选项修复严重损坏的视频。 </translation>
    </message>
    <message>
        <source>Click &amp;quot;Next&amp;quot; to add a &apos;sample video&apos; of the same format, shot using the same device.</source>
        <translation>单击&amp;quot;下一步&amp;quot;，添加一个使用同一设备拍摄、格式相同的“样本视频”。</translation>
    </message>
    <message>
        <source>The sample and the damaged video remain unchanged during repair process.</source>
        <translation>修复过程中，样本视频和损坏的视频均保持不变。</translation>
    </message>
</context>
<context>
    <name>CloseApplicationDlg</name>
    <message>
        <source>Exit</source>
        <translation>退出</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>是</translation>
    </message>
    <message>
        <source>No</source>
        <translation>否</translation>
    </message>
    <message>
        <source>Are you sure you want to exit?</source>
        <translation>确定要退出吗？</translation>
    </message>
</context>
<context>
    <name>ConfirmDlgClass</name>
    <message>
        <source>Yes</source>
        <translation>是</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
</context>
<context>
    <name>InfoDlgClass</name>
    <message>
        <source>OK</source>
        <translation>确定</translation>
    </message>
</context>
<context>
    <name>QCheckUpdate</name>
    <message>
        <source>Software Update</source>
        <translation>软件更新</translation>
    </message>
    <message>
        <source>Checking for updates...</source>
        <translation>正在检查更新...</translation>
    </message>
    <message>
        <source>No update available.</source>
        <translation>没有可用的更新。</translation>
    </message>
    <message>
        <source>The update check failed: %1</source>
        <translation>检查更新失败：%1</translation>
    </message>
    <message>
        <source>there is no network connection</source>
        <translation>没有网络连接</translation>
    </message>
    <message>
        <source>no update address is set</source>
        <translation>未设置更新地址</translation>
    </message>
    <message>
        <source>the update address is not valid</source>
        <translation>更新地址无效</translation>
    </message>
    <message>
        <source>the server gave no answer</source>
        <translation>服务器没有响应</translation>
    </message>
    <message>
        <source>the server&apos;s answer holds no version</source>
        <translation>服务器的响应中没有版本号</translation>
    </message>
    <message>
        <source>this copy does not know its own version</source>
        <translation>此副本不知道自己的版本</translation>
    </message>
</context>
<context>
    <name>QDownloadApp</name>
    <message>
        <source>Software Update</source>
        <translation>软件更新</translation>
    </message>
    <message>
        <source>Downloading Files</source>
        <translation>正在下载文件</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>确定</translation>
    </message>
    <message>
        <source>Time Elapsed: </source>
        <translation>已用时间： </translation>
    </message>
    <message>
        <source> sec </source>
        <translation> 秒 </translation>
    </message>
    <message>
        <source> MB copied) </source>
        <translation> MB 已复制) </translation>
    </message>
    <message>
        <source>Transfer Rate: </source>
        <translation>传输速率： </translation>
    </message>
    <message>
        <source> KB/sec </source>
        <translation> KB/秒 </translation>
    </message>
    <message>
        <source>The installer could not be started: </source>
        <translation>无法启动安装程序： </translation>
    </message>
    <message>
        <source>Update failed 

 Update failed due to partial download.</source>
        <translation>更新失败 

 下载不完整，更新失败。</translation>
    </message>
</context>
<context>
    <name>QShowUpdate</name>
    <message>
        <source>Update</source>
        <translation>更新</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>A new minor update </source>
        <translation>新的次要更新 </translation>
    </message>
    <message>
        <source> is available. Click Update to proceed further.</source>
        <translation> 可用。单击“更新”继续。</translation>
    </message>
    <message>
        <source>A new major release </source>
        <translation>新的主要版本 </translation>
    </message>
</context>
<context>
    <name>ReferenceFileDlg</name>
    <message>
        <source>Browse</source>
        <translation>浏览</translation>
    </message>
    <message>
        <source>Apply to all files of same format.</source>
        <translation>应用于所有相同格式的文件。</translation>
    </message>
    <message>
        <source>Repair</source>
        <translation>修复</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Add a sample video:</source>
        <translation>添加样本视频：</translation>
    </message>
    <message>
        <source>Add File</source>
        <translation>添加文件</translation>
    </message>
</context>
<context>
    <name>ReferenceRepairedDlg</name>
    <message>
        <source>Video file repaired successfully!</source>
        <translation>视频文件修复成功！</translation>
    </message>
</context>
<context>
    <name>SaveDlgClass</name>
    <message>
        <source>Save repaired file at source location.</source>
        <translation>将修复的文件保存在源位置。</translation>
    </message>
    <message>
        <source>Save file at custom location.</source>
        <translation>将文件保存在自定义位置。</translation>
    </message>
    <message>
        <source>Browse</source>
        <translation>浏览</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>保存</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Reelwright </source>
        <translation>Reelwright </translation>
    </message>
    <message>
        <source>Select Folder</source>
        <translation>选择文件夹</translation>
    </message>
</context>
<context>
    <name>StopDlg</name>
    <message>
        <source>Yes</source>
        <translation>是</translation>
    </message>
    <message>
        <source>No</source>
        <translation>否</translation>
    </message>
    <message>
        <source>Do you want to stop the current process?</source>
        <translation>是否要停止当前过程？</translation>
    </message>
    <message>
        <source>You can&apos;t resume the process from this point. All the changes will be discarded. </source>
        <translation>无法从此处继续该过程。所有更改都将被放弃。 </translation>
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
        <translation>Reelwright 视频修复</translation>
    </message>
    <message>
        <source>✕</source>
        <translation>✕</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>关闭</translation>
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
        <translation>最小化</translation>
    </message>
    <message>
        <source>≡</source>
        <translation>≡</translation>
    </message>
    <message>
        <source>Menu</source>
        <translation>菜单</translation>
    </message>
    <message>
        <source>About</source>
        <translation>关于</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>帮助</translation>
    </message>
    <message>
        <source>Update</source>
        <translation>更新</translation>
    </message>
    <message>
        <source>Add Your Corrupt Videos to Repair</source>
        <translation>添加要修复的损坏视频</translation>
    </message>
    <message>
        <source>+</source>
        <translation>+</translation>
    </message>
    <message>
        <source>Add Videos</source>
        <translation>添加视频</translation>
    </message>
    <message>
        <source>Repair Your Videos</source>
        <translation>修复您的视频</translation>
    </message>
    <message>
        <source>Click &apos;Repair&apos; button to fix corrupted videos. This may take a while depending on the number of videos and their size</source>
        <translation>单击“修复”按钮修复损坏的视频。根据视频数量和大小，这可能需要一些时间。</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>全选</translation>
    </message>
    <message>
        <source>List of video files</source>
        <translation>视频文件列表</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>添加</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>移除</translation>
    </message>
    <message>
        <source>Repair</source>
        <translation>修复</translation>
    </message>
    <message>
        <source>Repaired files will be saved at the source file location.</source>
        <translation>修复的文件将保存在源文件所在位置。</translation>
    </message>
    <message>
        <source>To change location</source>
        <translation>要更改位置</translation>
    </message>
    <message>
        <source>Click here</source>
        <translation>单击此处</translation>
    </message>
    <message>
        <source>Repairing selected videos</source>
        <translation>正在修复所选视频</translation>
    </message>
    <message>
        <source>This may take a while, depending on the number of videos and their file size. Please wait while the process is completed.</source>
        <translation>根据视频数量和文件大小，这可能需要一些时间。请等待该过程完成。</translation>
    </message>
    <message>
        <source>Overall Progress</source>
        <translation>总体进度</translation>
    </message>
    <message>
        <source>0%</source>
        <translation>0%</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>返回</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>停止</translation>
    </message>
    <message>
        <source>Save Repaired Files</source>
        <translation>保存修复的文件</translation>
    </message>
    <message>
        <source>Preview</source>
        <translation>预览</translation>
    </message>
    <message>
        <source>What is a reference file?</source>
        <translation>什么是参考文件？</translation>
    </message>
</context>
<context>
    <name>VideoRepairWindow</name>
    <message>
        <source>Completed</source>
        <translation>已完成</translation>
    </message>
    <message>
        <source>Preview</source>
        <translation>预览</translation>
    </message>
    <message>
        <source>Awaiting Action</source>
        <translation>等待操作</translation>
    </message>
    <message>
        <source>Advance Repair</source>
        <translation>高级修复</translation>
    </message>
    <message>
        <source>The sample video can&apos;t be read. Choose another sample video.</source>
        <translation>无法读取样本视频。请选择其他样本视频。</translation>
    </message>
    <message>
        <source>Advance Repair Running</source>
        <translation>正在进行高级修复</translation>
    </message>
    <message>
        <source>Please wait while the &apos;Advance Repair&apos; process is running.</source>
        <translation>“高级修复”正在进行，请稍候。</translation>
    </message>
    <message>
        <source> File Name</source>
        <translation> 文件名</translation>
    </message>
    <message>
        <source> Path</source>
        <translation> 路径</translation>
    </message>
    <message>
        <source> Size (MB)</source>
        <translation> 大小 (MB)</translation>
    </message>
    <message>
        <source> Modified Date</source>
        <translation> 修改日期</translation>
    </message>
    <message>
        <source> Created Date</source>
        <translation> 创建日期</translation>
    </message>
    <message>
        <source>Add File</source>
        <translation>添加文件</translation>
    </message>
    <message>
        <source>Files already added to list will be skipped.</source>
        <translation>已添加到列表的文件将被跳过。</translation>
    </message>
    <message>
        <source>Repaired files will be saved at the source file location.</source>
        <translation>修复的文件将保存在源文件所在位置。</translation>
    </message>
    <message>
        <source>To change location</source>
        <translation>要更改位置</translation>
    </message>
    <message>
        <source>List of video files</source>
        <translation>视频文件列表</translation>
    </message>
    <message>
        <source>No video player was found to preview the file. Install mpv or mplayer and try again.</source>
        <translation>未找到可用于预览的视频播放器。请安装 mpv 或 mplayer 后重试。</translation>
    </message>
    <message>
        <source>Processing</source>
        <translation>正在处理</translation>
    </message>
    <message>
        <source>Failed</source>
        <translation>失败</translation>
    </message>
    <message>
        <source>Aborted</source>
        <translation>已中止</translation>
    </message>
    <message>
        <source>Repair Process Completed</source>
        <translation>修复过程已完成</translation>
    </message>
    <message>
        <source>Click on the &apos;Save Repaired Files&apos; to save all your repaired videos. Click the &apos;Preview&apos; under Action column to preview repaired videos. </source>
        <translation>单击“保存修复的文件”保存所有修复的视频。单击“操作”列中的“预览”可预览修复的视频。 </translation>
    </message>
    <message>
        <source>This video is severely damaged. Run advance repair option to repair it before saving.</source>
        <translation>此视频严重损坏。请在保存前运行高级修复。</translation>
    </message>
    <message>
        <source>This video is severely corrupted and cannot be repaired.</source>
        <translation>此视频严重损坏，无法修复。</translation>
    </message>
    <message>
        <source>  Path</source>
        <translation>  路径</translation>
    </message>
    <message>
        <source> Status</source>
        <translation> 状态</translation>
    </message>
    <message>
        <source> Action</source>
        <translation> 操作</translation>
    </message>
    <message>
        <source>Repairing selected videos</source>
        <translation>正在修复所选视频</translation>
    </message>
    <message>
        <source>This may take a while, depending on the number of videos and their file size. Please wait while the process is completed.</source>
        <translation>根据视频数量和文件大小，这可能需要一些时间。请等待该过程完成。</translation>
    </message>
    <message>
        <source>Queued</source>
        <translation>排队中</translation>
    </message>
    <message>
        <source>Repairing </source>
        <translation>正在修复 </translation>
    </message>
    <message>
        <source>This process will stop after processing the current file.</source>
        <translation>处理完当前文件后，该过程将停止。</translation>
    </message>
    <message>
        <source>Do you want to stop the process?</source>
        <translation>是否要停止该过程？</translation>
    </message>
    <message>
        <source>Do you want to stop the current process?</source>
        <translation>是否要停止当前过程？</translation>
    </message>
    <message>
        <source>You can&apos;t resume the process from this point. All the changes will be discarded. </source>
        <translation>无法从此处继续该过程。所有更改都将被放弃。 </translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>是</translation>
    </message>
    <message>
        <source>No</source>
        <translation>否</translation>
    </message>
    <message>
        <source>Choose Location</source>
        <translation>选择位置</translation>
    </message>
    <message>
        <source>Repair process completed.
Check &apos;Status&apos; column to view the repair outcome.</source>
        <translation>修复过程已完成。
请查看“状态”列了解修复结果。</translation>
    </message>
    <message>
        <source>Repaired files saved successfully.</source>
        <translation>修复的文件已成功保存。</translation>
    </message>
    <message>
        <source>Wait while repaired files are being saved.</source>
        <translation>正在保存修复的文件，请稍候。</translation>
    </message>
    <message>
        <source>The chosen folder can&apos;t be found. Choose another folder.</source>
        <translation>找不到所选文件夹。请选择其他文件夹。</translation>
    </message>
    <message numerus="yes">
        <source>%n repaired file(s) could not be saved in the chosen folder. Check that the folder can be written to, or choose another one.</source>
        <translation>
            <numerusform>有 %n 个修复的文件无法保存到所选文件夹。请检查该文件夹是否可写，或选择其他文件夹。</numerusform>
        </translation>
    </message>
    <message>
        <source>Add Videos</source>
        <translation>添加视频</translation>
    </message>
    <message>
        <source>Repair</source>
        <translation>修复</translation>
    </message>
    <message>
        <source>Save Repaired Files</source>
        <translation>保存修复的文件</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>停止</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>添加</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>移除</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>返回</translation>
    </message>
    <message>
        <source>Add Your Corrupt Videos to Repair</source>
        <translation>添加要修复的损坏视频</translation>
    </message>
    <message>
        <source>Repair Your Videos</source>
        <translation>修复您的视频</translation>
    </message>
    <message>
        <source>Click &apos;Repair&apos; button to fix corrupted videos. This may take a while depending on the number of videos and their size</source>
        <translation>单击“修复”按钮修复损坏的视频。根据视频数量和大小，这可能需要一些时间。</translation>
    </message>
    <message>
        <source>About</source>
        <translation>关于</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>帮助</translation>
    </message>
    <message>
        <source>Update</source>
        <translation>更新</translation>
    </message>
    <message>
        <source>Do you want to run advance repair on the severely corrupted video before leaving this page?</source>
        <translation>离开此页面前，是否要对严重损坏的视频运行高级修复？</translation>
    </message>
    <message>
        <source>This action will clear repair results.
Do you want to go back to previous screen?</source>
        <translation>此操作将清除修复结果。
是否要返回上一个屏幕？</translation>
    </message>
    <message>
        <source>Languages</source>
        <translation>语言</translation>
    </message>
    <message>
        <source>More Tools</source>
        <translation>更多工具</translation>
    </message>
    <message>
        <source>Application Running! 
Please halt the current process to Exit.</source>
        <translation>应用程序正在运行！
请先停止当前进程再退出。</translation>
    </message>
    <message>
        <source>Do you want to run advance repair on the severely corrupted files before exiting?</source>
        <translation>退出前是否要对严重损坏的文件进行高级修复？</translation>
    </message>
    <message>
        <source>Are you sure you want to exit?</source>
        <translation>确定要退出吗？</translation>
    </message>
    <message>
        <source>Recover Data</source>
        <translation>恢复数据</translation>
    </message>
    <message>
        <source>Repair Photo</source>
        <translation>修复照片</translation>
    </message>
    <message>
        <source>Recover Photo</source>
        <translation>恢复照片</translation>
    </message>
    <message>
        <source>Monitor Drive</source>
        <translation>监控驱动器</translation>
    </message>
    <message>
        <source>%1 frames</source>
        <translation>%1 帧</translation>
    </message>
    <message>
        <source>%1 min %2 s of sound</source>
        <translation>%1 分 %2 秒声音</translation>
    </message>
    <message>
        <source>%1 s of sound</source>
        <translation>%1 秒声音</translation>
    </message>
    <message>
        <source>%1 damaged bytes skipped</source>
        <translation>跳过 %1 个损坏字节</translation>
    </message>
    <message>
        <source>%1 unreadable bytes read as zeros</source>
        <translation>%1 个无法读取的字节按零读取</translation>
    </message>
    <message>
        <source>Adding videos: %1 in the list</source>
        <translation>正在添加视频：列表中有 %1 个</translation>
    </message>
    <message>
        <source>Skipped, not videos this program repairs: %1</source>
        <translation>已跳过，不是本程序可修复的视频：%1</translation>
    </message>
    <message>
        <source>Not found: %1</source>
        <translation>未找到：%1</translation>
    </message>
    <message>
        <source>These files can no longer be found and are left out: %1</source>
        <translation>以下文件已找不到，将被排除：%1</translation>
    </message>
    <message>
        <source>The video player %1 could not be started.</source>
        <translation>无法启动视频播放器 %1。</translation>
    </message>
    <message>
        <source>The video player %1 ended at once without showing the file.</source>
        <translation>视频播放器 %1 立即退出，未显示该文件。</translation>
    </message>
    <message>
        <source>%1 could not be started.</source>
        <translation>无法启动 %1。</translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <source>Reelwright is already running.</source>
        <translation>Reelwright 已在运行。</translation>
    </message>
</context>
<context>
    <name>repairFinishDialog</name>
    <message>
        <source> Repair process completed.</source>
        <translation> 修复过程已完成。</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>确定</translation>
    </message>
    <message>
        <source>What is a reference file?</source>
        <translation>什么是参考文件？</translation>
    </message>
</context>
</TS>
