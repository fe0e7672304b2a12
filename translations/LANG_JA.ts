<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja" sourcelanguage="en">
<context>
    <name>AboutDlg</name>
    <message>
        <source>About</source>
        <translation>バージョン情報</translation>
    </message>
    <message>
        <source>Version %1</source>
        <translation>バージョン %1</translation>
    </message>
    <message>
        <source>Running on %1 (%2)</source>
        <translation>%1 (%2) で実行中</translation>
    </message>
    <message>
        <source>Support</source>
        <translation>サポート</translation>
    </message>
    <message>
        <source>End-User License Agreement</source>
        <translation>使用許諾契約書</translation>
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
        <translation>次へ</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>キャンセル</translation>
    </message>
    <message>
        <source>Learn More</source>
        <translation>詳細</translation>
    </message>
    <message>
        <source>Advance Repair</source>
        <translation>高度な修復</translation>
    </message>
    <message>
        <source>Use this option to repair severely damaged videos. </source>
        <translation>このオプションで、ひどく破損した動画を修復します。 </translation>
    </message>
    <message>
        <source>Click &amp;quot;Next&amp;quot; to add a &apos;sample video&apos; of the same format, shot using the same device.</source>
        <translation>&amp;quot;次へ&amp;quot;をクリックして、同じ機器で撮影した同じ形式の「サンプル動画」を追加します。</translation>
    </message>
    <message>
        <source>The sample and the damaged video remain unchanged during repair process.</source>
        <translation>修復処理中、サンプル動画と破損した動画は変更されません。</translation>
    </message>
</context>
<context>
    <name>CloseApplicationDlg</name>
    <message>
        <source>Exit</source>
        <translation>終了</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>はい</translation>
    </message>
    <message>
        <source>No</source>
        <translation>いいえ</translation>
    </message>
    <message>
        <source>Are you sure you want to exit?</source>
        <translation>終了してもよろしいですか?</translation>
    </message>
</context>
<context>
    <name>ConfirmDlgClass</name>
    <message>
        <source>Yes</source>
        <translation>はい</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>キャンセル</translation>
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
        <translation>ソフトウェアの更新</translation>
    </message>
    <message>
        <source>Checking for updates...</source>
        <translation>更新を確認しています...</translation>
    </message>
    <message>
        <source>No update available.</source>
        <translation>利用できる更新はありません。</translation>
    </message>
    <message>
        <source>The update check failed: %1</source>
        <translation>更新の確認に失敗しました: %1</translation>
    </message>
    <message>
        <source>there is no network connection</source>
        <translation>ネットワークに接続されていません</translation>
    </message>
    <message>
        <source>no update address is set</source>
        <translation>更新アドレスが設定されていません</translation>
    </message>
    <message>
        <source>the update address is not valid</source>
        <translation>更新アドレスが正しくありません</translation>
    </message>
    <message>
        <source>the server gave no answer</source>
        <translation>サーバーから応答がありません</translation>
    </message>
    <message>
        <source>the server&apos;s answer holds no version</source>
        <translation>サーバーの応答にバージョンがありません</translation>
    </message>
    <message>
        <source>this copy does not know its own version</source>
        <translation>このコピーは自身のバージョンを認識していません</translation>
    </message>
</context>
<context>
    <name>QDownloadApp</name>
    <message>
        <source>Software Update</source>
        <translation>ソフトウェアの更新</translation>
    </message>
    <message>
        <source>Downloading Files</source>
        <translation>ファイルをダウンロードしています</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Time Elapsed: </source>
        <translation>経過時間: </translation>
    </message>
    <message>
        <source> sec </source>
        <translation> 秒 </translation>
    </message>
    <message>
        <source> MB copied) </source>
        <translation> MB コピー済み) </translation>
    </message>
    <message>
        <source>Transfer Rate: </source>
        <translation>転送速度: </translation>
    </message>
    <message>
        <source> KB/sec </source>
        <translation> KB/秒 </translation>
    </message>
    <message>
        <source>The installer could not be started: </source>
        <translation>インストーラーを起動できませんでした: </translation>
    </message>
    <message>
        <source>Update failed 

 Update failed due to partial download.</source>
        <translation>更新に失敗しました 

 ダウンロードが不完全なため、更新に失敗しました。</translation>
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
        <translation>キャンセル</translation>
    </message>
    <message>
        <source>A new minor update </source>
        <translation>新しいマイナー更新 </translation>
    </message>
    <message>
        <source> is available. Click Update to proceed further.</source>
        <translation> が利用できます。続行するには[更新]をクリックしてください。</translation>
    </message>
    <message>
        <source>A new major release </source>
        <translation>新しいメジャーリリース </translation>
    </message>
</context>
<context>
    <name>ReferenceFileDlg</name>
    <message>
        <source>Browse</source>
        <translation>参照</translation>
    </message>
    <message>
        <source>Apply to all files of same format.</source>
        <translation>同じ形式のすべてのファイルに適用します。</translation>
    </message>
    <message>
        <source>Repair</source>
        <translation>修復</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>キャンセル</translation>
    </message>
    <message>
        <source>Add a sample video:</source>
        <translation>サンプル動画を追加:</translation>
    </message>
    <message>
        <source>Add File</source>
        <translation>ファイルを追加</translation>
    </message>
</context>
<context>
    <name>ReferenceRepairedDlg</name>
    <message>
        <source>Video file repaired successfully!</source>
        <translation>動画ファイルは正常に修復されました!</translation>
    </message>
</context>
<context>
    <name>SaveDlgClass</name>
    <message>
        <source>Save repaired file at source location.</source>
        <translation>修復したファイルを元の場所に保存します。</translation>
    </message>
    <message>
        <source>Save file at custom location.</source>
        <translation>ファイルを指定した場所に保存します。</translation>
    </message>
    <message>
        <source>Browse</source>
        <translation>参照</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>保存</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>キャンセル</translation>
    </message>
    <message>
        <source>Reelwright </source>
        <translation>Reelwright </translation>
    </message>
    <message>
        <source>Select Folder</source>
        <translation>フォルダーを選択</translation>
    </message>
</context>
<context>
    <name>StopDlg</name>
    <message>
        <source>Yes</source>
        <translation>はい</translation>
    </message>
    <message>
        <source>No</source>
        <translation>いいえ</translation>
    </message>
    <message>
        <source>Do you want to stop the current process?</source>
        <translation>現在の処理を停止しますか?</translation>
    </message>
    <message>
        <source>You can&apos;t resume the process from this point. All the changes will be discarded. </source>
        <translation>ここから処理を再開することはできません。すべての変更は破棄されます。 </translation>
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
        <translation>Reelwright 動画修復</translation>
    </message>
    <message>
        <source>✕</source>
        <translation>✕</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>閉じる</translation>
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
        <translation>メニュー</translation>
    </message>
    <message>
        <source>About</source>
        <translation>バージョン情報</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>ヘルプ</translation>
    </message>
    <message>
        <source>Update</source>
        <translation>更新</translation>
    </message>
    <message>
        <source>Add Your Corrupt Videos to Repair</source>
        <translation>修復する破損動画を追加してください</translation>
    </message>
    <message>
        <source>+</source>
        <translation>+</translation>
    </message>
    <message>
        <source>Add Videos</source>
        <translation>動画を追加</translation>
    </message>
    <message>
        <source>Repair Your Videos</source>
        <translation>動画を修復</translation>
    </message>
    <message>
        <source>Click &apos;Repair&apos; button to fix corrupted videos. This may take a while depending on the number of videos and their size</source>
        <translation>[修復]をクリックすると破損した動画を修復します。動画の数とサイズによっては時間がかかることがあります。</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>すべて選択</translation>
    </message>
    <message>
        <source>List of video files</source>
        <translation>動画ファイルの一覧</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>追加</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>削除</translation>
    </message>
    <message>
        <source>Repair</source>
        <translation>修復</translation>
    </message>
    <message>
        <source>Repaired files will be saved at the source file location.</source>
        <translation>修復したファイルは元のファイルの場所に保存されます。</translation>
    </message>
    <message>
        <source>To change location</source>
        <translation>保存場所を変更するには</translation>
    </message>
    <message>
        <source>Click here</source>
        <translation>ここをクリック</translation>
    </message>
    <message>
        <source>Repairing selected videos</source>
        <translation>選択した動画を修復しています</translation>
    </message>
    <message>
        <source>This may take a while, depending on the number of videos and their file size. Please wait while the process is completed.</source>
        <translation>動画の数とファイルサイズによっては時間がかかることがあります。処理が完了するまでお待ちください。</translation>
    </message>
    <message>
        <source>Overall Progress</source>
        <translation>全体の進行状況</translation>
    </message>
    <message>
        <source>0%</source>
        <translation>0%</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>戻る</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>停止</translation>
    </message>
    <message>
        <source>Save Repaired Files</source>
        <translation>修復したファイルを保存</translation>
    </message>
    <message>
        <source>Preview</source>
        <translation>プレビュー</translation>
    </message>
    <message>
        <source>What is a reference file?</source>
        <translation>参照ファイルとは?</translation>
    </message>
</context>
<context>
    <name>VideoRepairWindow</name>
    <message>
        <source>Completed</source>
        <translation>完了</translation>
    </message>
    <message>
        <source>Preview</source>
        <translation>プレビュー</translation>
    </message>
    <message>
        <source>Awaiting Action</source>
        <translation>操作待ち</translation>
    </message>
    <message>
        <source>Advance Repair</source>
        <translation>高度な修復</translation>
    </message>
    <message>
        <source>The sample video can&apos;t be read. Choose another sample video.</source>
        <translation>サンプル動画を読み取れません。別のサンプル動画を選択してください。</translation>
    </message>
    <message>
        <source>Advance Repair Running</source>
        <translation>高度な修復を実行中</translation>
    </message>
    <message>
        <source>Please wait while the &apos;Advance Repair&apos; process is running.</source>
        <translation>「高度な修復」の処理が終わるまでお待ちください。</translation>
    </message>
    <message>
        <source> File Name</source>
        <translation> ファイル名</translation>
    </message>
    <message>
        <source> Path</source>
        <translation> パス</translation>
    </message>
    <message>
        <source> Size (MB)</source>
        <translation> サイズ (MB)</translation>
    </message>
    <message>
        <source> Modified Date</source>
        <translation> 更新日時</translation>
    </message>
    <message>
        <source> Created Date</source>
        <translation> 作成日時</translation>
    </message>
    <message>
        <source>Add File</source>
        <translation>ファイルを追加</translation>
    </message>
    <message>
        <source>Files already added to list will be skipped.</source>
        <translation>一覧に追加済みのファイルはスキップされます。</translation>
    </message>
    <message>
        <source>Repaired files will be saved at the source file location.</source>
        <translation>修復したファイルは元のファイルの場所に保存されます。</translation>
    </message>
    <message>
        <source>To change location</source>
        <translation>保存場所を変更するには</translation>
    </message>
    <message>
        <source>List of video files</source>
        <translation>動画ファイルの一覧</translation>
    </message>
    <message>
        <source>No video player was found to preview the file. Install mpv or mplayer and try again.</source>
        <translation>プレビュー用の動画プレーヤーが見つかりません。mpv または mplayer をインストールしてもう一度お試しください。</translation>
    </message>
    <message>
        <source>Processing</source>
        <translation>処理中</translation>
    </message>
    <message>
        <source>Failed</source>
        <translation>失敗</translation>
    </message>
    <message>
        <source>Aborted</source>
        <translation>中止</translation>
    </message>
    <message>
        <source>Repair Process Completed</source>
        <translation>修復処理が完了しました</translation>
    </message>
    <message>
        <source>Click on the &apos;Save Repaired Files&apos; to save all your repaired videos. Click the &apos;Preview&apos; under Action column to preview repaired videos. </source>
        <translation>[修復したファイルを保存]をクリックすると、修復したすべての動画を保存します。操作列の[プレビュー]をクリックすると、修復した動画を再生できます。 </translation>
    </message>
    <message>
        <source>This video is severely damaged. Run advance repair option to repair it before saving.</source>
        <translation>この動画はひどく破損しています。保存する前に高度な修復を実行してください。</translation>
    </message>
    <message>
        <source>This video is severely corrupted and cannot be repaired.</source>
        <translation>この動画はひどく破損しているため修復できません。</translation>
    </message>
    <message>
        <source>  Path</source>
        <translation>  パス</translation>
    </message>
    <message>
        <source> Status</source>
        <translation> 状態</translation>
    </message>
    <message>
        <source> Action</source>
        <translation> 操作</translation>
    </message>
    <message>
        <source>Repairing selected videos</source>
        <translation>選択した動画を修復しています</translation>
    </message>
    <message>
        <source>This may take a while, depending on the number of videos and their file size. Please wait while the process is completed.</source>
        <translation>動画の数とファイルサイズによっては時間がかかることがあります。処理が完了するまでお待ちください。</translation>
    </message>
    <message>
        <source>Queued</source>
        <translation>待機中</translation>
    </message>
    <message>
        <source>Repairing </source>
        <translation>修復中: </translation>
    </message>
    <message>
        <source>This process will stop after processing the current file.</source>
        <translation>現在のファイルの処理後に停止します。</translation>
    </message>
    <message>
        <source>Do you want to stop the process?</source>
        <translation>処理を停止しますか?</translation>
    </message>
    <message>
        <source>Do you want to stop the current process?</source>
        <translation>現在の処理を停止しますか?</translation>
    </message>
    <message>
        <source>You can&apos;t resume the process from this point. All the changes will be discarded. </source>
        <translation>ここから処理を再開することはできません。すべての変更は破棄されます。 </translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>はい</translation>
    </message>
    <message>
        <source>No</source>
        <translation>いいえ</translation>
    </message>
    <message>
        <source>Choose Location</source>
        <translation>保存場所を選択</translation>
    </message>
    <message>
        <source>Repair process completed.
Check &apos;Status&apos; column to view the repair outcome.</source>
        <translation>修復処理が完了しました。
結果は「状態」列で確認できます。</translation>
    </message>
    <message>
        <source>Repaired files saved successfully.</source>
        <translation>修復したファイルは正常に保存されました。</translation>
    </message>
    <message>
        <source>Wait while repaired files are being saved.</source>
        <translation>修復したファイルを保存しています。お待ちください。</translation>
    </message>
    <message>
        <source>The chosen folder can&apos;t be found. Choose another folder.</source>
        <translation>選択したフォルダーが見つかりません。別のフォルダーを選択してください。</translation>
    </message>
    <message numerus="yes">
        <source>%n repaired file(s) could not be saved in the chosen folder. Check that the folder can be written to, or choose another one.</source>
        <translation>
            <numerusform>修復したファイル %n 件を選択したフォルダーに保存できませんでした。フォルダーに書き込めるか確認するか、別のフォルダーを選択してください。</numerusform>
        </translation>
    </message>
    <message>
        <source>Add Videos</source>
        <translation>動画を追加</translation>
    </message>
    <message>
        <source>Repair</source>
        <translation>修復</translation>
    </message>
    <message>
        <source>Save Repaired Files</source>
        <translation>修復したファイルを保存</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>停止</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>追加</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>削除</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>戻る</translation>
    </message>
    <message>
        <source>Add Your Corrupt Videos to Repair</source>
        <translation>修復する破損動画を追加してください</translation>
    </message>
    <message>
        <source>Repair Your Videos</source>
        <translation>動画を修復</translation>
    </message>
    <message>
        <source>Click &apos;Repair&apos; button to fix corrupted videos. This may take a while depending on the number of videos and their size</source>
        <translation>[修復]をクリックすると破損した動画を修復します。動画の数とサイズによっては時間がかかることがあります。</translation>
    </message>
    <message>
        <source>About</source>
        <translation>バージョン情報</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>ヘルプ</translation>
    </message>
    <message>
        <source>Update</source>
        <translation>更新</translation>
    </message>
    <message>
        <source>Do you want to run advance repair on the severely corrupted video before leaving this page?</source>
        <translation>このページを離れる前に、ひどく破損した動画に高度な修復を実行しますか?</translation>
    </message>
    <message>
        <source>This action will clear repair results.
Do you want to go back to previous screen?</source>
        <translation>修復結果は消去されます。
前の画面に戻りますか?</translation>
    </message>
    <message>
        <source>Languages</source>
        <translation>言語</translation>
    </message>
    <message>
        <source>More Tools</source>
        <translation>その他のツール</translation>
    </message>
    <message>
        <source>Application Running! 
Please halt the current process to Exit.</source>
        <translation>アプリケーションは実行中です。
終了するには現在の処理を停止してください。</translation>
    </message>
    <message>
        <source>Do you want to run advance repair on the severely corrupted files before exiting?</source>
        <translation>終了する前に、ひどく破損したファイルの高度な修復を実行しますか?</translation>
    </message>
    <message>
        <source>Are you sure you want to exit?</source>
        <translation>終了してもよろしいですか?</translation>
    </message>
    <message>
        <source>Recover Data</source>
        <translation>データ復元</translation>
    </message>
    <message>
        <source>Repair Photo</source>
        <translation>写真修復</translation>
    </message>
    <message>
        <source>Recover Photo</source>
        <translation>写真復元</translation>
    </message>
    <message>
        <source>Monitor Drive</source>
        <translation>ドライブ監視</translation>
    </message>
    <message>
        <source>%1 frames</source>
        <translation>%1 フレーム</translation>
    </message>
    <message>
        <source>%1 min %2 s of sound</source>
        <translation>音声 %1 分 %2 秒</translation>
    </message>
    <message>
        <source>%1 s of sound</source>
        <translation>音声 %1 秒</translation>
    </message>
    <message>
        <source>%1 damaged bytes skipped</source>
        <translation>破損した %1 バイトをスキップ</translation>
    </message>
    <message>
        <source>%1 unreadable bytes read as zeros</source>
        <translation>読み取れない %1 バイトをゼロとして読み込み</translation>
    </message>
    <message>
        <source>Adding videos: %1 in the list</source>
        <translation>ビデオを追加中: リストに %1 件</translation>
    </message>
    <message>
        <source>Skipped, not videos this program repairs: %1</source>
        <translation>スキップ（このプログラムで修復できるビデオではありません）: %1</translation>
    </message>
    <message>
        <source>Not found: %1</source>
        <translation>見つかりません: %1</translation>
    </message>
    <message>
        <source>These files can no longer be found and are left out: %1</source>
        <translation>次のファイルは見つからなくなったため除外されます: %1</translation>
    </message>
    <message>
        <source>The video player %1 could not be started.</source>
        <translation>ビデオプレーヤー %1 を起動できませんでした。</translation>
    </message>
    <message>
        <source>The video player %1 ended at once without showing the file.</source>
        <translation>ビデオプレーヤー %1 はファイルを表示せずにすぐに終了しました。</translation>
    </message>
    <message>
        <source>%1 could not be started.</source>
        <translation>%1 を起動できませんでした。</translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <source>Reelwright is already running.</source>
        <translation>Reelwright はすでに実行中です。</translation>
    </message>
</context>
<context>
    <name>repairFinishDialog</name>
    <message>
        <source> Repair process completed.</source>
        <translation> 修復処理が完了しました。</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>What is a reference file?</source>
        <translation>参照ファイルとは?</translation>
    </message>
</context>
</TS>
