<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="hi" sourcelanguage="en">
<context>
    <name>AboutDlg</name>
    <message>
        <source>About</source>
        <translation>परिचय</translation>
    </message>
    <message>
        <source>Version %1</source>
        <translation>संस्करण %1</translation>
    </message>
    <message>
        <source>Running on %1 (%2)</source>
        <translation>%1 (%2) पर चल रहा है</translation>
    </message>
    <message>
        <source>Support</source>
        <translation>सहायता</translation>
    </message>
    <message>
        <source>End-User License Agreement</source>
        <translation>अंतिम उपयोगकर्ता लाइसेंस अनुबंध</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>ठीक है</translation>
    </message>
</context>
<context>
    <name>AdvancedRepairDlg</name>
    <message>
        <source>Next</source>
        <translation>आगे</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>रद्द करें</translation>
    </message>
    <message>
        <source>Learn More</source>
        <translation>और जानें</translation>
    </message>
    <message>
        <source>Advance Repair</source>
        <translation>उन्नत मरम्मत</translation>
    </message>
    <message>
        <source>Use this option to repair severely damaged videos. </source>
        <translation>गंभीर रूप से क्षतिग्रस्त वीडियो की मरम्मत के लिए इस विकल्प का उपयोग करें। </translation>
    </message>
    <message>
        <source>Click &amp;quot;Next&amp;quot; to add a &apos;sample video&apos; of the same format, shot using the same device.</source>
        <translation>उसी डिवाइस से शूट किया गया, उसी फ़ॉर्मेट का &apos;नमूना वीडियो&apos; जोड़ने के लिए &amp;quot;आगे&amp;quot; पर क्लिक करें।</translation>
    </message>
    <message>
        <source>The sample and the damaged video remain unchanged during repair process.</source>
        <translation>मरम्मत प्रक्रिया के दौरान नमूना वीडियो और क्षतिग्रस्त वीडियो अपरिवर्तित रहते हैं।</translation>
    </message>
</context>
<context>
    <name>CloseApplicationDlg</name>
    <message>
        <source>Exit</source>
        <translation>बाहर निकलें</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>हाँ</translation>
    </message>
    <message>
        <source>No</source>
        <translation>नहीं</translation>
    </message>
    <message>
        <source>Are you sure you want to exit?</source>
        <translation>क्या आप वाकई बाहर निकलना चाहते हैं?</translation>
    </message>
</context>
<context>
    <name>ConfirmDlgClass</name>
    <message>
        <source>Yes</source>
        <translation>हाँ</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>रद्द करें</translation>
    </message>
</context>
<context>
    <name>InfoDlgClass</name>
    <message>
        <source>OK</source>
        <translation>ठीक है</translation>
    </message>
</context>
<context>
    <name>QCheckUpdate</name>
    <message>
        <source>Software Update</source>
        <translation>सॉफ़्टवेयर अपडेट</translation>
    </message>
    <message>
        <source>Checking for updates...</source>
        <translation>अपडेट की जाँच हो रही है...</translation>
    </message>
    <message>
        <source>No update available.</source>
        <translation>कोई अपडेट उपलब्ध नहीं है।</translation>
    </message>
    <message>
        <source>The update check failed: %1</source>
        <translation>अपडेट की जाँच विफल रही: %1</translation>
    </message>
    <message>
        <source>there is no network connection</source>
        <translation>कोई नेटवर्क कनेक्शन नहीं है</translation>
    </message>
    <message>
        <source>no update address is set</source>
        <translation>कोई अपडेट पता सेट नहीं है</translation>
    </message>
    <message>
        <source>the update address is not valid</source>
        <translation>अपडेट पता मान्य नहीं है</translation>
    </message>
    <message>
        <source>the server gave no answer</source>
        <translation>सर्वर ने कोई उत्तर नहीं दिया</translation>
    </message>
    <message>
        <source>the server&apos;s answer holds no version</source>
        <translation>सर्वर के उत्तर में कोई संस्करण नहीं है</translation>
    </message>
    <message>
        <source>this copy does not know its own version</source>
        <translation>इस प्रति को अपना संस्करण ज्ञात नहीं है</translation>
    </message>
</context>
<context>
    <name>QDownloadApp</name>
    <message>
        <source>Software Update</source>
        <translation>सॉफ़्टवेयर अपडेट</translation>
    </message>
    <message>
        <source>Downloading Files</source>
        <translation>फ़ाइलें डाउनलोड हो रही हैं</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>ठीक है</translation>
    </message>
    <message>
        <source>Time Elapsed: </source>
        <translation>बीता समय: </translation>
    </message>
    <message>
        <source> sec </source>
        <translation> सेकंड </translation>
    </message>
    <message>
        <source> MB copied) </source>
        <translation> MB कॉपी हुआ) </translation>
    </message>
    <message>
        <source>Transfer Rate: </source>
        <translation>स्थानांतरण दर: </translation>
    </message>
    <message>
        <source> KB/sec </source>
        <translation> KB/सेकंड </translation>
    </message>
    <message>
        <source>The installer could not be started: </source>
        <translation>इंस्टॉलर शुरू नहीं हो सका: </translation>
    </message>
    <message>
        <source>Update failed 

 Update failed due to partial download.</source>
        <translation>अपडेट विफल 

 अधूरे डाउनलोड के कारण अपडेट विफल हो गया।</translation>
    </message>
</context>
<context>
    <name>QShowUpdate</name>
    <message>
        <source>Update</source>
        <translation>अपडेट</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>रद्द करें</translation>
    </message>
    <message>
        <source>A new minor update </source>
        <translation>एक नया छोटा अपडेट </translation>
    </message>
    <message>
        <source> is available. Click Update to proceed further.</source>
        <translation> उपलब्ध है। आगे बढ़ने के लिए अपडेट पर क्लिक करें।</translation>
    </message>
    <message>
        <source>A new major release </source>
        <translation>एक नया बड़ा संस्करण </translation>
    </message>
</context>
<context>
    <name>ReferenceFileDlg</name>
    <message>
        <source>Browse</source>
        <translation>ब्राउज़ करें</translation>
    </message>
    <message>
        <source>Apply to all files of same format.</source>
        <translation>समान फ़ॉर्मेट की सभी फ़ाइलों पर लागू करें।</translation>
    </message>
    <message>
        <source>Repair</source>
        <translation>मरम्मत करें</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>रद्द करें</translation>
    </message>
    <message>
        <source>Add a sample video:</source>
        <translation>नमूना वीडियो जोड़ें:</translation>
    </message>
    <message>
        <source>Add File</source>
        <translation>फ़ाइल जोड़ें</translation>
    </message>
</context>
<context>
    <name>ReferenceRepairedDlg</name>
    <message>
        <source>Video file repaired successfully!</source>
        <translation>वीडियो फ़ाइल की मरम्मत सफलतापूर्वक हो गई!</translation>
    </message>
</context>
<context>
    <name>SaveDlgClass</name>
    <message>
        <source>Save repaired file at source location.</source>
        <translation>मरम्मत की गई फ़ाइल को स्रोत स्थान पर सहेजें।</translation>
    </message>
    <message>
        <source>Save file at custom location.</source>
        <translation>फ़ाइल को अपनी पसंद के स्थान पर सहेजें।</translation>
    </message>
    <message>
        <source>Browse</source>
        <translation>ब्राउज़ करें</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>सहेजें</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>रद्द करें</translation>
    </message>
    <message>
        <source>Reelwright </source>
        <translation>Reelwright </translation>
    </message>
    <message>
        <source>Select Folder</source>
        <translation>फ़ोल्डर चुनें</translation>
    </message>
</context>
<context>
    <name>StopDlg</name>
    <message>
        <source>Yes</source>
        <translation>हाँ</translation>
    </message>
    <message>
        <source>No</source>
        <translation>नहीं</translation>
    </message>
    <message>
        <source>Do you want to stop the current process?</source>
        <translation>क्या आप वर्तमान प्रक्रिया रोकना चाहते हैं?</translation>
    </message>
    <message>
        <source>You can&apos;t resume the process from this point. All the changes will be discarded. </source>
        <translation>इस बिंदु से प्रक्रिया फिर से शुरू नहीं की जा सकती। सभी परिवर्तन हटा दिए जाएँगे। </translation>
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
        <translation>Reelwright वीडियो मरम्मत</translation>
    </message>
    <message>
        <source>✕</source>
        <translation>✕</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>बंद करें</translation>
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
        <translation>छोटा करें</translation>
    </message>
    <message>
        <source>≡</source>
        <translation>≡</translation>
    </message>
    <message>
        <source>Menu</source>
        <translation>मेनू</translation>
    </message>
    <message>
        <source>About</source>
        <translation>परिचय</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>सहायता</translation>
    </message>
    <message>
        <source>Update</source>
        <translation>अपडेट</translation>
    </message>
    <message>
        <source>Add Your Corrupt Videos to Repair</source>
        <translation>मरम्मत के लिए अपने दूषित वीडियो जोड़ें</translation>
    </message>
    <message>
        <source>+</source>
        <translation>+</translation>
    </message>
    <message>
        <source>Add Videos</source>
        <translation>वीडियो जोड़ें</translation>
    </message>
    <message>
        <source>Repair Your Videos</source>
        <translation>अपने वीडियो की मरम्मत करें</translation>
    </message>
    <message>
        <source>Click &apos;Repair&apos; button to fix corrupted videos. This may take a while depending on the number of videos and their size</source>
        <translation>दूषित वीडियो ठीक करने के लिए &apos;मरम्मत करें&apos; बटन पर क्लिक करें। वीडियो की संख्या और आकार के अनुसार इसमें कुछ समय लग सकता है।</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>सभी चुनें</translation>
    </message>
    <message>
        <source>List of video files</source>
        <translation>वीडियो फ़ाइलों की सूची</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>जोड़ें</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>हटाएँ</translation>
    </message>
    <message>
        <source>Repair</source>
        <translation>मरम्मत करें</translation>
    </message>
    <message>
        <source>Repaired files will be saved at the source file location.</source>
        <translation>मरम्मत की गई फ़ाइलें स्रोत फ़ाइल के स्थान पर सहेजी जाएँगी।</translation>
    </message>
    <message>
        <source>To change location</source>
        <translation>स्थान बदलने के लिए</translation>
    </message>
    <message>
        <source>Click here</source>
        <translation>यहाँ क्लिक करें</translation>
    </message>
    <message>
        <source>Repairing selected videos</source>
        <translation>चयनित वीडियो की मरम्मत हो रही है</translation>
    </message>
    <message>
        <source>This may take a while, depending on the number of videos and their file size. Please wait while the process is completed.</source>
        <translation>वीडियो की संख्या और उनके फ़ाइल आकार के अनुसार इसमें कुछ समय लग सकता है। कृपया प्रक्रिया पूरी होने तक प्रतीक्षा करें।</translation>
    </message>
    <message>
        <source>Overall Progress</source>
        <translation>कुल प्रगति</translation>
    </message>
    <message>
        <source>0%</source>
        <translation>0%</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>वापस</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>रोकें</translation>
    </message>
    <message>
        <source>Save Repaired Files</source>
        <translation>मरम्मत की गई फ़ाइलें सहेजें</translation>
    </message>
    <message>
        <source>Preview</source>
        <translation>पूर्वावलोकन</translation>
    </message>
    <message>
        <source>What is a reference file?</source>
        <translation>संदर्भ फ़ाइल क्या है?</translation>
    </message>
</context>
<context>
    <name>VideoRepairWindow</name>
    <message>
        <source>Completed</source>
        <translation>पूर्ण</translation>
    </message>
    <message>
        <source>Preview</source>
        <translation>पूर्वावलोकन</translation>
    </message>
    <message>
        <source>Awaiting Action</source>
        <translation>कार्रवाई की प्रतीक्षा</translation>
    </message>
    <message>
        <source>Advance Repair</source>
        <translation>उन्नत मरम्मत</translation>
    </message>
    <message>
        <source>The sample video can&apos;t be read. Choose another sample video.</source>
        <translation>नमूना वीडियो पढ़ा नहीं जा सकता। कोई दूसरा नमूना वीडियो चुनें।</translation>
    </message>
    <message>
        <source>Advance Repair Running</source>
        <translation>उन्नत मरम्मत चल रही है</translation>
    </message>
    <message>
        <source>Please wait while the &apos;Advance Repair&apos; process is running.</source>
        <translation>कृपया &apos;उन्नत मरम्मत&apos; प्रक्रिया चलने तक प्रतीक्षा करें।</translation>
    </message>
    <message>
        <source> File Name</source>
        <translation> फ़ाइल का नाम</translation>
    </message>
    <message>
        <source> Path</source>
        <translation> पथ</translation>
    </message>
    <message>
        <source> Size (MB)</source>
        <translation> आकार (MB)</translation>
    </message>
    <message>
        <source> Modified Date</source>
        <translation> संशोधन तिथि</translation>
    </message>
    <message>
        <source> Created Date</source>
        <translation> निर्माण तिथि</translation>
    </message>
    <message>
        <source>Add File</source>
        <translation>फ़ाइल जोड़ें</translation>
    </message>
    <message>
        <source>Files already added to list will be skipped.</source>
        <translation>सूची में पहले से जोड़ी गई फ़ाइलें छोड़ दी जाएँगी।</translation>
    </message>
    <message>
        <source>Repaired files will be saved at the source file location.</source>
        <translation>मरम्मत की गई फ़ाइलें स्रोत फ़ाइल के स्थान पर सहेजी जाएँगी।</translation>
    </message>
    <message>
        <source>To change location</source>
        <translation>स्थान बदलने के लिए</translation>
    </message>
    <message>
        <source>List of video files</source>
        <translation>वीडियो फ़ाइलों की सूची</translation>
    </message>
    <message>
        <source>No video player was found to preview the file. Install mpv or mplayer and try again.</source>
        <translation>फ़ाइल का पूर्वावलोकन करने के लिए कोई वीडियो प्लेयर नहीं मिला। mpv या mplayer इंस्टॉल करके फिर से प्रयास करें।</translation>
    </message>
    <message>
        <source>Processing</source>
        <translation>प्रक्रिया जारी</translation>
    </message>
    <message>
        <source>Failed</source>
        <translation>विफल</translation>
    </message>
    <message>
        <source>Aborted</source>
        <translation>रद्द</translation>
    </message>
    <message>
        <source>Repair Process Completed</source>
        <translation>मरम्मत प्रक्रिया पूरी हुई</translation>
    </message>
    <message>
        <source>Click on the &apos;Save Repaired Files&apos; to save all your repaired videos. Click the &apos;Preview&apos; under Action column to preview repaired videos. </source>
        <translation>सभी मरम्मत किए गए वीडियो सहेजने के लिए &apos;मरम्मत की गई फ़ाइलें सहेजें&apos; पर क्लिक करें। उन्हें देखने के लिए कार्रवाई कॉलम में &apos;पूर्वावलोकन&apos; पर क्लिक करें। </translation>
    </message>
    <message>
        <source>This video is severely damaged. Run advance repair option to repair it before saving.</source>
        <translation>यह वीडियो गंभीर रूप से क्षतिग्रस्त है। सहेजने से पहले उन्नत मरम्मत चलाएँ।</translation>
    </message>
    <message>
        <source>This video is severely corrupted and cannot be repaired.</source>
        <translation>यह वीडियो बहुत अधिक दूषित है और इसकी मरम्मत नहीं हो सकती।</translation>
    </message>
    <message>
        <source>  Path</source>
        <translation>  पथ</translation>
    </message>
    <message>
        <source> Status</source>
        <translation> स्थिति</translation>
    </message>
    <message>
        <source> Action</source>
        <translation> कार्रवाई</translation>
    </message>
    <message>
        <source>Repairing selected videos</source>
        <translation>चयनित वीडियो की मरम्मत हो रही है</translation>
    </message>
    <message>
        <source>This may take a while, depending on the number of videos and their file size. Please wait while the process is completed.</source>
        <translation>वीडियो की संख्या और उनके फ़ाइल आकार के अनुसार इसमें कुछ समय लग सकता है। कृपया प्रक्रिया पूरी होने तक प्रतीक्षा करें।</translation>
    </message>
    <message>
        <source>Queued</source>
        <translation>कतार में</translation>
    </message>
    <message>
        <source>Repairing </source>
        <translation>मरम्मत हो रही है: </translation>
    </message>
    <message>
        <source>This process will stop after processing the current file.</source>
        <translation>वर्तमान फ़ाइल की प्रक्रिया के बाद यह प्रक्रिया रुक जाएगी।</translation>
    </message>
    <message>
        <source>Do you want to stop the process?</source>
        <translation>क्या आप प्रक्रिया रोकना चाहते हैं?</translation>
    </message>
    <message>
        <source>Do you want to stop the current process?</source>
        <translation>क्या आप वर्तमान प्रक्रिया रोकना चाहते हैं?</translation>
    </message>
    <message>
        <source>You can&apos;t resume the process from this point. All the changes will be discarded. </source>
        <translation>इस बिंदु से प्रक्रिया फिर से शुरू नहीं की जा सकती। सभी परिवर्तन हटा दिए जाएँगे। </translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>हाँ</translation>
    </message>
    <message>
        <source>No</source>
        <translation>नहीं</translation>
    </message>
    <message>
        <source>Choose Location</source>
        <translation>स्थान चुनें</translation>
    </message>
    <message>
        <source>Repair process completed.
Check &apos;Status&apos; column to view the repair outcome.</source>
        <translation>मरम्मत प्रक्रिया पूरी हुई।
परिणाम देखने के लिए &apos;स्थिति&apos; कॉलम देखें।</translation>
    </message>
    <message>
        <source>Repaired files saved successfully.</source>
        <translation>मरम्मत की गई फ़ाइलें सफलतापूर्वक सहेजी गईं।</translation>
    </message>
    <message>
        <source>Wait while repaired files are being saved.</source>
        <translation>मरम्मत की गई फ़ाइलें सहेजी जा रही हैं, कृपया प्रतीक्षा करें।</translation>
    </message>
    <message>
        <source>The chosen folder can&apos;t be found. Choose another folder.</source>
        <translation>चुना गया फ़ोल्डर नहीं मिला। कोई दूसरा फ़ोल्डर चुनें।</translation>
    </message>
    <message numerus="yes">
        <source>%n repaired file(s) could not be saved in the chosen folder. Check that the folder can be written to, or choose another one.</source>
        <translation>
            <numerusform>मरम्मत की गई %n फ़ाइल चुने गए फ़ोल्डर में सहेजी नहीं जा सकी। जाँचें कि फ़ोल्डर में लिखा जा सकता है, या कोई दूसरा चुनें।</numerusform>
            <numerusform>मरम्मत की गई %n फ़ाइलें चुने गए फ़ोल्डर में सहेजी नहीं जा सकीं। जाँचें कि फ़ोल्डर में लिखा जा सकता है, या कोई दूसरा चुनें।</numerusform>
        </translation>
    </message>
    <message>
        <source>Add Videos</source>
        <translation>वीडियो जोड़ें</translation>
    </message>
    <message>
        <source>Repair</source>
        <translation>मरम्मत करें</translation>
    </message>
    <message>
        <source>Save Repaired Files</source>
        <translation>मरम्मत की गई फ़ाइलें सहेजें</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>रोकें</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>जोड़ें</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>हटाएँ</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>वापस</translation>
    </message>
    <message>
        <source>Add Your Corrupt Videos to Repair</source>
        <translation>मरम्मत के लिए अपने दूषित वीडियो जोड़ें</translation>
    </message>
    <message>
        <source>Repair Your Videos</source>
        <translation>अपने वीडियो की मरम्मत करें</translation>
    </message>
    <message>
        <source>Click &apos;Repair&apos; button to fix corrupted videos. This may take a while depending on the number of videos and their size</source>
        <translation>दूषित वीडियो ठीक करने के लिए &apos;मरम्मत करें&apos; बटन पर क्लिक करें। वीडियो की संख्या और आकार के अनुसार इसमें कुछ समय लग सकता है।</translation>
    </message>
    <message>
        <source>About</source>
        <translation>परिचय</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>सहायता</translation>
    </message>
    <message>
        <source>Update</source>
        <translation>अपडेट</translation>
    </message>
    <message>
        <source>Do you want to run advance repair on the severely corrupted video before leaving this page?</source>
        <translation>क्या आप यह पेज छोड़ने से पहले गंभीर रूप से दूषित वीडियो पर उन्नत मरम्मत चलाना चाहते हैं?</translation>
    </message>
    <message>
        <source>This action will clear repair results.
Do you want to go back to previous screen?</source>
        <translation>इससे मरम्मत के परिणाम हट जाएँगे।
क्या आप पिछली स्क्रीन पर वापस जाना चाहते हैं?</translation>
    </message>
    <message>
        <source>Languages</source>
        <translation>भाषाएँ</translation>
    </message>
    <message>
        <source>More Tools</source>
        <translation>और टूल</translation>
    </message>
    <message>
        <source>Application Running! 
Please halt the current process to Exit.</source>
        <translation>एप्लिकेशन चल रहा है!
बाहर निकलने के लिए कृपया वर्तमान प्रक्रिया रोकें।</translation>
    </message>
    <message>
        <source>Do you want to run advance repair on the severely corrupted files before exiting?</source>
        <translation>बाहर निकलने से पहले क्या आप गंभीर रूप से क्षतिग्रस्त फ़ाइलों पर उन्नत मरम्मत चलाना चाहते हैं?</translation>
    </message>
    <message>
        <source>Are you sure you want to exit?</source>
        <translation>क्या आप वाकई बाहर निकलना चाहते हैं?</translation>
    </message>
    <message>
        <source>Recover Data</source>
        <translation>डेटा पुनर्प्राप्त करें</translation>
    </message>
    <message>
        <source>Repair Photo</source>
        <translation>फ़ोटो की मरम्मत करें</translation>
    </message>
    <message>
        <source>Recover Photo</source>
        <translation>फ़ोटो पुनर्प्राप्त करें</translation>
    </message>
    <message>
        <source>Monitor Drive</source>
        <translation>ड्राइव की निगरानी करें</translation>
    </message>
    <message>
        <source>%1 frames</source>
        <translation>%1 फ़्रेम</translation>
    </message>
    <message>
        <source>%1 min %2 s of sound</source>
        <translation>%1 मिनट %2 सेकंड ध्वनि</translation>
    </message>
    <message>
        <source>%1 s of sound</source>
        <translation>%1 सेकंड ध्वनि</translation>
    </message>
    <message>
        <source>%1 damaged bytes skipped</source>
        <translation>%1 क्षतिग्रस्त बाइट छोड़े गए</translation>
    </message>
    <message>
        <source>%1 unreadable bytes read as zeros</source>
        <translation>%1 अपठनीय बाइट शून्य के रूप में पढ़े गए</translation>
    </message>
    <message>
        <source>Adding videos: %1 in the list</source>
        <translation>वीडियो जोड़े जा रहे हैं: सूची में %1</translation>
    </message>
    <message>
        <source>Skipped, not videos this program repairs: %1</source>
        <translation>छोड़े गए, ये वीडियो यह प्रोग्राम ठीक नहीं करता: %1</translation>
    </message>
    <message>
        <source>Not found: %1</source>
        <translation>नहीं मिला: %1</translation>
    </message>
    <message>
        <source>These files can no longer be found and are left out: %1</source>
        <translation>ये फ़ाइलें अब नहीं मिलतीं और छोड़ दी गई हैं: %1</translation>
    </message>
    <message>
        <source>The video player %1 could not be started.</source>
        <translation>वीडियो प्लेयर %1 शुरू नहीं हो सका।</translation>
    </message>
    <message>
        <source>The video player %1 ended at once without showing the file.</source>
        <translation>वीडियो प्लेयर %1 फ़ाइल दिखाए बिना तुरंत बंद हो गया।</translation>
    </message>
    <message>
        <source>%1 could not be started.</source>
        <translation>%1 शुरू नहीं हो सका।</translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <source>Reelwright is already running.</source>
        <translation>Reelwright पहले से चल रहा है।</translation>
    </message>
</context>
<context>
    <name>repairFinishDialog</name>
    <message>
        <source> Repair process completed.</source>
        <translation> मरम्मत प्रक्रिया पूरी हुई।</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>ठीक है</translation>
    </message>
    <message>
        <source>What is a reference file?</source>
        <translation>संदर्भ फ़ाइल क्या है?</translation>
    </message>
</context>
</TS>
