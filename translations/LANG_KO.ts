<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ko" sourcelanguage="en">
<context>
    <name>AboutDlg</name>
    <message>
        <source>About</source>
        <translation>정보</translation>
    </message>
    <message>
        <source>Version %1</source>
        <translation>버전 %1</translation>
    </message>
    <message>
        <source>Running on %1 (%2)</source>
        <translation>%1 (%2)에서 실행 중</translation>
    </message>
    <message>
        <source>Support</source>
        <translation>지원</translation>
    </message>
    <message>
        <source>End-User License Agreement</source>
        <translation>최종 사용자 사용권 계약</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>확인</translation>
    </message>
</context>
<context>
    <name>AdvancedRepairDlg</name>
    <message>
        <source>Next</source>
        <translation>다음</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>취소</translation>
    </message>
    <message>
        <source>Learn More</source>
        <translation>자세히 알아보기</translation>
    </message>
    <message>
        <source>Advance Repair</source>
        <translation>고급 복구</translation>
    </message>
    <message>
        <source>Use this option to repair severely damaged videos. </source>
        <translation>심하게 손상된 동영상을 복구하려면 이 옵션을 사용하십시오. </translation>
    </message>
    <message>
        <source>Click &amp;quot;Next&amp;quot; to add a &apos;sample video&apos; of the same format, shot using the same device.</source>
        <translation>&amp;quot;다음&amp;quot;을 클릭하여 같은 장치로 촬영한 같은 형식의 &apos;샘플 동영상&apos;을 추가하십시오.</translation>
    </message>
    <message>
        <source>The sample and the damaged video remain unchanged during repair process.</source>
        <translation>복구 과정에서 샘플 동영상과 손상된 동영상은 변경되지 않습니다.</translation>
    </message>
</context>
<context>
    <name>CloseApplicationDlg</name>
    <message>
        <source>Exit</source>
        <translation>종료</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>예</translation>
    </message>
    <message>
        <source>No</source>
        <translation>아니요</translation>
    </message>
    <message>
        <source>Are you sure you want to exit?</source>
        <translation>종료하시겠습니까?</translation>
    </message>
</context>
<context>
    <name>ConfirmDlgClass</name>
    <message>
        <source>Yes</source>
        <translation>예</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>취소</translation>
    </message>
</context>
<context>
    <name>InfoDlgClass</name>
    <message>
        <source>OK</source>
        <translation>확인</translation>
    </message>
</context>
<context>
    <name>QCheckUpdate</name>
    <message>
        <source>Software Update</source>
        <translation>소프트웨어 업데이트</translation>
    </message>
    <message>
        <source>Checking for updates...</source>
        <translation>업데이트 확인 중...</translation>
    </message>
    <message>
        <source>No update available.</source>
        <translation>사용 가능한 업데이트가 없습니다.</translation>
    </message>
    <message>
        <source>The update check failed: %1</source>
        <translation>업데이트 확인 실패: %1</translation>
    </message>
    <message>
        <source>there is no network connection</source>
        <translation>네트워크에 연결되어 있지 않습니다</translation>
    </message>
    <message>
        <source>no update address is set</source>
        <translation>업데이트 주소가 설정되지 않았습니다</translation>
    </message>
    <message>
        <source>the update address is not valid</source>
        <translation>업데이트 주소가 올바르지 않습니다</translation>
    </message>
    <message>
        <source>the server gave no answer</source>
        <translation>서버가 응답하지 않았습니다</translation>
    </message>
    <message>
        <source>the server&apos;s answer holds no version</source>
        <translation>서버 응답에 버전이 없습니다</translation>
    </message>
    <message>
        <source>this copy does not know its own version</source>
        <translation>이 사본은 자신의 버전을 알지 못합니다</translation>
    </message>
</context>
<context>
    <name>QDownloadApp</name>
    <message>
        <source>Software Update</source>
        <translation>소프트웨어 업데이트</translation>
    </message>
    <message>
        <source>Downloading Files</source>
        <translation>파일 다운로드 중</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>확인</translation>
    </message>
    <message>
        <source>Time Elapsed: </source>
        <translation>경과 시간: </translation>
    </message>
    <message>
        <source> sec </source>
        <translation> 초 </translation>
    </message>
    <message>
        <source> MB copied) </source>
        <translation> MB 복사됨) </translation>
    </message>
    <message>
        <source>Transfer Rate: </source>
        <translation>전송 속도: </translation>
    </message>
    <message>
        <source> KB/sec </source>
        <translation> KB/초 </translation>
    </message>
    <message>
        <source>The installer could not be started: </source>
        <translation>설치 프로그램을 시작할 수 없습니다: </translation>
    </message>
    <message>
        <source>Update failed 

 Update failed due to partial download.</source>
        <translation>업데이트 실패 

 다운로드가 완료되지 않아 업데이트에 실패했습니다.</translation>
    </message>
</context>
<context>
    <name>QShowUpdate</name>
    <message>
        <source>Update</source>
        <translation>업데이트</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>취소</translation>
    </message>
    <message>
        <source>A new minor update </source>
        <translation>새 부 업데이트 </translation>
    </message>
    <message>
        <source> is available. Click Update to proceed further.</source>
        <translation> 을(를) 사용할 수 있습니다. 계속하려면 업데이트를 클릭하십시오.</translation>
    </message>
    <message>
        <source>A new major release </source>
        <translation>새 주 릴리스 </translation>
    </message>
</context>
<context>
    <name>ReferenceFileDlg</name>
    <message>
        <source>Browse</source>
        <translation>찾아보기</translation>
    </message>
    <message>
        <source>Apply to all files of same format.</source>
        <translation>같은 형식의 모든 파일에 적용합니다.</translation>
    </message>
    <message>
        <source>Repair</source>
        <translation>복구</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>취소</translation>
    </message>
    <message>
        <source>Add a sample video:</source>
        <translation>샘플 동영상 추가:</translation>
    </message>
    <message>
        <source>Add File</source>
        <translation>파일 추가</translation>
    </message>
</context>
<context>
    <name>ReferenceRepairedDlg</name>
    <message>
        <source>Video file repaired successfully!</source>
        <translation>동영상 파일을 복구했습니다!</translation>
    </message>
</context>
<context>
    <name>SaveDlgClass</name>
    <message>
        <source>Save repaired file at source location.</source>
        <translation>복구된 파일을 원본 위치에 저장합니다.</translation>
    </message>
    <message>
        <source>Save file at custom location.</source>
        <translation>파일을 사용자 지정 위치에 저장합니다.</translation>
    </message>
    <message>
        <source>Browse</source>
        <translation>찾아보기</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>저장</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>취소</translation>
    </message>
    <message>
        <source>Reelwright </source>
        <translation>Reelwright </translation>
    </message>
    <message>
        <source>Select Folder</source>
        <translation>폴더 선택</translation>
    </message>
</context>
<context>
    <name>StopDlg</name>
    <message>
        <source>Yes</source>
        <translation>예</translation>
    </message>
    <message>
        <source>No</source>
        <translation>아니요</translation>
    </message>
    <message>
        <source>Do you want to stop the current process?</source>
        <translation>현재 작업을 중지하시겠습니까?</translation>
    </message>
    <message>
        <source>You can&apos;t resume the process from this point. All the changes will be discarded. </source>
        <translation>이 시점부터 작업을 다시 시작할 수 없습니다. 모든 변경 내용이 삭제됩니다. </translation>
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
        <translation>Reelwright 동영상 복구</translation>
    </message>
    <message>
        <source>✕</source>
        <translation>✕</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>닫기</translation>
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
        <translation>최소화</translation>
    </message>
    <message>
        <source>≡</source>
        <translation>≡</translation>
    </message>
    <message>
        <source>Menu</source>
        <translation>메뉴</translation>
    </message>
    <message>
        <source>About</source>
        <translation>정보</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>도움말</translation>
    </message>
    <message>
        <source>Update</source>
        <translation>업데이트</translation>
    </message>
    <message>
        <source>Add Your Corrupt Videos to Repair</source>
        <translation>복구할 손상된 동영상을 추가하십시오</translation>
    </message>
    <message>
        <source>+</source>
        <translation>+</translation>
    </message>
    <message>
        <source>Add Videos</source>
        <translation>동영상 추가</translation>
    </message>
    <message>
        <source>Repair Your Videos</source>
        <translation>동영상 복구</translation>
    </message>
    <message>
        <source>Click &apos;Repair&apos; button to fix corrupted videos. This may take a while depending on the number of videos and their size</source>
        <translation>&apos;복구&apos; 버튼을 클릭하여 손상된 동영상을 복구하십시오. 동영상 수와 크기에 따라 시간이 걸릴 수 있습니다.</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>모두 선택</translation>
    </message>
    <message>
        <source>List of video files</source>
        <translation>동영상 파일 목록</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>추가</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>제거</translation>
    </message>
    <message>
        <source>Repair</source>
        <translation>복구</translation>
    </message>
    <message>
        <source>Repaired files will be saved at the source file location.</source>
        <translation>복구된 파일은 원본 파일 위치에 저장됩니다.</translation>
    </message>
    <message>
        <source>To change location</source>
        <translation>위치를 변경하려면</translation>
    </message>
    <message>
        <source>Click here</source>
        <translation>여기를 클릭</translation>
    </message>
    <message>
        <source>Repairing selected videos</source>
        <translation>선택한 동영상 복구 중</translation>
    </message>
    <message>
        <source>This may take a while, depending on the number of videos and their file size. Please wait while the process is completed.</source>
        <translation>동영상 수와 파일 크기에 따라 시간이 걸릴 수 있습니다. 작업이 완료될 때까지 기다려 주십시오.</translation>
    </message>
    <message>
        <source>Overall Progress</source>
        <translation>전체 진행률</translation>
    </message>
    <message>
        <source>0%</source>
        <translation>0%</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>뒤로</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>중지</translation>
    </message>
    <message>
        <source>Save Repaired Files</source>
        <translation>복구된 파일 저장</translation>
    </message>
    <message>
        <source>Preview</source>
        <translation>미리 보기</translation>
    </message>
    <message>
        <source>What is a reference file?</source>
        <translation>참조 파일이란?</translation>
    </message>
</context>
<context>
    <name>VideoRepairWindow</name>
    <message>
        <source>Completed</source>
        <translation>완료</translation>
    </message>
    <message>
        <source>Preview</source>
        <translation>미리 보기</translation>
    </message>
    <message>
        <source>Awaiting Action</source>
        <translation>작업 대기 중</translation>
    </message>
    <message>
        <source>Advance Repair</source>
        <translation>고급 복구</translation>
    </message>
    <message>
        <source>The sample video can&apos;t be read. Choose another sample video.</source>
        <translation>샘플 동영상을 읽을 수 없습니다. 다른 샘플 동영상을 선택하십시오.</translation>
    </message>
    <message>
        <source>Advance Repair Running</source>
        <translation>고급 복구 실행 중</translation>
    </message>
    <message>
        <source>Please wait while the &apos;Advance Repair&apos; process is running.</source>
        <translation>&apos;고급 복구&apos;가 실행되는 동안 기다려 주십시오.</translation>
    </message>
    <message>
        <source> File Name</source>
        <translation> 파일 이름</translation>
    </message>
    <message>
        <source> Path</source>
        <translation> 경로</translation>
    </message>
    <message>
        <source> Size (MB)</source>
        <translation> 크기(MB)</translation>
    </message>
    <message>
        <source> Modified Date</source>
        <translation> 수정한 날짜</translation>
    </message>
    <message>
        <source> Created Date</source>
        <translation> 만든 날짜</translation>
    </message>
    <message>
        <source>Add File</source>
        <translation>파일 추가</translation>
    </message>
    <message>
        <source>Files already added to list will be skipped.</source>
        <translation>이미 목록에 추가된 파일은 건너뜁니다.</translation>
    </message>
    <message>
        <source>Repaired files will be saved at the source file location.</source>
        <translation>복구된 파일은 원본 파일 위치에 저장됩니다.</translation>
    </message>
    <message>
        <source>To change location</source>
        <translation>위치를 변경하려면</translation>
    </message>
    <message>
        <source>List of video files</source>
        <translation>동영상 파일 목록</translation>
    </message>
    <message>
        <source>No video player was found to preview the file. Install mpv or mplayer and try again.</source>
        <translation>미리 보기에 사용할 동영상 플레이어가 없습니다. mpv 또는 mplayer를 설치한 후 다시 시도하십시오.</translation>
    </message>
    <message>
        <source>Processing</source>
        <translation>처리 중</translation>
    </message>
    <message>
        <source>Failed</source>
        <translation>실패</translation>
    </message>
    <message>
        <source>Aborted</source>
        <translation>중단됨</translation>
    </message>
    <message>
        <source>Repair Process Completed</source>
        <translation>복구 작업 완료</translation>
    </message>
    <message>
        <source>Click on the &apos;Save Repaired Files&apos; to save all your repaired videos. Click the &apos;Preview&apos; under Action column to preview repaired videos. </source>
        <translation>&apos;복구된 파일 저장&apos;을 클릭하여 복구된 동영상을 모두 저장하십시오. 작업 열의 &apos;미리 보기&apos;를 클릭하면 복구된 동영상을 볼 수 있습니다. </translation>
    </message>
    <message>
        <source>This video is severely damaged. Run advance repair option to repair it before saving.</source>
        <translation>이 동영상은 심하게 손상되었습니다. 저장하기 전에 고급 복구를 실행하십시오.</translation>
    </message>
    <message>
        <source>This video is severely corrupted and cannot be repaired.</source>
        <translation>이 동영상은 심하게 손상되어 복구할 수 없습니다.</translation>
    </message>
    <message>
        <source>  Path</source>
        <translation>  경로</translation>
    </message>
    <message>
        <source> Status</source>
        <translation> 상태</translation>
    </message>
    <message>
        <source> Action</source>
        <translation> 작업</translation>
    </message>
    <message>
        <source>Repairing selected videos</source>
        <translation>선택한 동영상 복구 중</translation>
    </message>
    <message>
        <source>This may take a while, depending on the number of videos and their file size. Please wait while the process is completed.</source>
        <translation>동영상 수와 파일 크기에 따라 시간이 걸릴 수 있습니다. 작업이 완료될 때까지 기다려 주십시오.</translation>
    </message>
    <message>
        <source>Queued</source>
        <translation>대기 중</translation>
    </message>
    <message>
        <source>Repairing </source>
        <translation>복구 중: </translation>
    </message>
    <message>
        <source>This process will stop after processing the current file.</source>
        <translation>현재 파일을 처리한 후 작업이 중지됩니다.</translation>
    </message>
    <message>
        <source>Do you want to stop the process?</source>
        <translation>작업을 중지하시겠습니까?</translation>
    </message>
    <message>
        <source>Do you want to stop the current process?</source>
        <translation>현재 작업을 중지하시겠습니까?</translation>
    </message>
    <message>
        <source>You can&apos;t resume the process from this point. All the changes will be discarded. </source>
        <translation>이 시점부터 작업을 다시 시작할 수 없습니다. 모든 변경 내용이 삭제됩니다. </translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>예</translation>
    </message>
    <message>
        <source>No</source>
        <translation>아니요</translation>
    </message>
    <message>
        <source>Choose Location</source>
        <translation>위치 선택</translation>
    </message>
    <message>
        <source>Repair process completed.
Check &apos;Status&apos; column to view the repair outcome.</source>
        <translation>복구 작업이 완료되었습니다.
&apos;상태&apos; 열에서 복구 결과를 확인하십시오.</translation>
    </message>
    <message>
        <source>Repaired files saved successfully.</source>
        <translation>복구된 파일을 저장했습니다.</translation>
    </message>
    <message>
        <source>Wait while repaired files are being saved.</source>
        <translation>복구된 파일을 저장하는 동안 기다려 주십시오.</translation>
    </message>
    <message>
        <source>The chosen folder can&apos;t be found. Choose another folder.</source>
        <translation>선택한 폴더를 찾을 수 없습니다. 다른 폴더를 선택하십시오.</translation>
    </message>
    <message numerus="yes">
        <source>%n repaired file(s) could not be saved in the chosen folder. Check that the folder can be written to, or choose another one.</source>
        <translation>
            <numerusform>복구된 파일 %n개를 선택한 폴더에 저장할 수 없습니다. 폴더에 쓸 수 있는지 확인하거나 다른 폴더를 선택하십시오.</numerusform>
        </translation>
    </message>
    <message>
        <source>Add Videos</source>
        <translation>동영상 추가</translation>
    </message>
    <message>
        <source>Repair</source>
        <translation>복구</translation>
    </message>
    <message>
        <source>Save Repaired Files</source>
        <translation>복구된 파일 저장</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>중지</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>추가</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>제거</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>뒤로</translation>
    </message>
    <message>
        <source>Add Your Corrupt Videos to Repair</source>
        <translation>복구할 손상된 동영상을 추가하십시오</translation>
    </message>
    <message>
        <source>Repair Your Videos</source>
        <translation>동영상 복구</translation>
    </message>
    <message>
        <source>Click &apos;Repair&apos; button to fix corrupted videos. This may take a while depending on the number of videos and their size</source>
        <translation>&apos;복구&apos; 버튼을 클릭하여 손상된 동영상을 복구하십시오. 동영상 수와 크기에 따라 시간이 걸릴 수 있습니다.</translation>
    </message>
    <message>
        <source>About</source>
        <translation>정보</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>도움말</translation>
    </message>
    <message>
        <source>Update</source>
        <translation>업데이트</translation>
    </message>
    <message>
        <source>Do you want to run advance repair on the severely corrupted video before leaving this page?</source>
        <translation>이 페이지를 떠나기 전에 심하게 손상된 동영상에 고급 복구를 실행하시겠습니까?</translation>
    </message>
    <message>
        <source>This action will clear repair results.
Do you want to go back to previous screen?</source>
        <translation>이 작업을 하면 복구 결과가 지워집니다.
이전 화면으로 돌아가시겠습니까?</translation>
    </message>
    <message>
        <source>Languages</source>
        <translation>언어</translation>
    </message>
    <message>
        <source>More Tools</source>
        <translation>기타 도구</translation>
    </message>
    <message>
        <source>Application Running! 
Please halt the current process to Exit.</source>
        <translation>응용 프로그램이 실행 중입니다!
종료하려면 현재 작업을 중지하십시오.</translation>
    </message>
    <message>
        <source>Do you want to run advance repair on the severely corrupted files before exiting?</source>
        <translation>종료하기 전에 심하게 손상된 파일에 고급 복구를 실행하시겠습니까?</translation>
    </message>
    <message>
        <source>Are you sure you want to exit?</source>
        <translation>종료하시겠습니까?</translation>
    </message>
    <message>
        <source>Recover Data</source>
        <translation>데이터 복구</translation>
    </message>
    <message>
        <source>Repair Photo</source>
        <translation>사진 복구</translation>
    </message>
    <message>
        <source>Recover Photo</source>
        <translation>사진 되살리기</translation>
    </message>
    <message>
        <source>Monitor Drive</source>
        <translation>드라이브 모니터</translation>
    </message>
    <message>
        <source>%1 frames</source>
        <translation>%1 프레임</translation>
    </message>
    <message>
        <source>%1 min %2 s of sound</source>
        <translation>소리 %1분 %2초</translation>
    </message>
    <message>
        <source>%1 s of sound</source>
        <translation>소리 %1초</translation>
    </message>
    <message>
        <source>%1 damaged bytes skipped</source>
        <translation>손상된 %1바이트 건너뜀</translation>
    </message>
    <message>
        <source>%1 unreadable bytes read as zeros</source>
        <translation>읽을 수 없는 %1바이트를 0으로 읽음</translation>
    </message>
    <message>
        <source>Adding videos: %1 in the list</source>
        <translation>동영상 추가 중: 목록에 %1개</translation>
    </message>
    <message>
        <source>Skipped, not videos this program repairs: %1</source>
        <translation>건너뜀, 이 프로그램이 복구하는 동영상이 아님: %1</translation>
    </message>
    <message>
        <source>Not found: %1</source>
        <translation>찾을 수 없음: %1</translation>
    </message>
    <message>
        <source>These files can no longer be found and are left out: %1</source>
        <translation>다음 파일을 더 이상 찾을 수 없어 제외됩니다: %1</translation>
    </message>
    <message>
        <source>The video player %1 could not be started.</source>
        <translation>동영상 플레이어 %1을(를) 시작할 수 없습니다.</translation>
    </message>
    <message>
        <source>The video player %1 ended at once without showing the file.</source>
        <translation>동영상 플레이어 %1이(가) 파일을 표시하지 않고 바로 종료되었습니다.</translation>
    </message>
    <message>
        <source>%1 could not be started.</source>
        <translation>%1을(를) 시작할 수 없습니다.</translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <source>Reelwright is already running.</source>
        <translation>Reelwright가 이미 실행 중입니다.</translation>
    </message>
</context>
<context>
    <name>repairFinishDialog</name>
    <message>
        <source> Repair process completed.</source>
        <translation> 복구 작업이 완료되었습니다.</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>확인</translation>
    </message>
    <message>
        <source>What is a reference file?</source>
        <translation>참조 파일이란?</translation>
    </message>
</context>
</TS>
