<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="pt_BR" sourcelanguage="en">
<context>
    <name>AboutDlg</name>
    <message>
        <source>About</source>
        <translation>Sobre</translation>
    </message>
    <message>
        <source>Version %1</source>
        <translation>Versão %1</translation>
    </message>
    <message>
        <source>Running on %1 (%2)</source>
        <translation>Executando em %1 (%2)</translation>
    </message>
    <message>
        <source>Support</source>
        <translation>Suporte</translation>
    </message>
    <message>
        <source>End-User License Agreement</source>
        <translation>Contrato de licença do usuário final</translation>
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
        <translation>Avançar</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancelar</translation>
    </message>
    <message>
        <source>Learn More</source>
        <translation>Saiba mais</translation>
    </message>
    <message>
        <source>Advance Repair</source>
        <translation>Reparo avançado</translation>
    </message>
    <message>
        <source>Use this option to repair severely damaged videos. </source>
        <translation>Use esta opção para reparar vídeos muito danificados. </translation>
    </message>
    <message>
        <source>Click &amp;quot;Next&amp;quot; to add a &apos;sample video&apos; of the same format, shot using the same device.</source>
        <translation>Clique em &amp;quot;Avançar&amp;quot; para adicionar um &apos;vídeo de amostra&apos; do mesmo formato, gravado com o mesmo dispositivo.</translation>
    </message>
    <message>
        <source>The sample and the damaged video remain unchanged during repair process.</source>
        <translation>O vídeo de amostra e o vídeo danificado permanecem inalterados durante o reparo.</translation>
    </message>
</context>
<context>
    <name>CloseApplicationDlg</name>
    <message>
        <source>Exit</source>
        <translation>Sair</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Sim</translation>
    </message>
    <message>
        <source>No</source>
        <translation>Não</translation>
    </message>
    <message>
        <source>Are you sure you want to exit?</source>
        <translation>Tem certeza de que deseja sair?</translation>
    </message>
</context>
<context>
    <name>ConfirmDlgClass</name>
    <message>
        <source>Yes</source>
        <translation>Sim</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancelar</translation>
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
        <translation>Atualização de software</translation>
    </message>
    <message>
        <source>Checking for updates...</source>
        <translation>Verificando atualizações...</translation>
    </message>
    <message>
        <source>No update available.</source>
        <translation>Nenhuma atualização disponível.</translation>
    </message>
    <message>
        <source>The update check failed: %1</source>
        <translation>A verificação de atualizações falhou: %1</translation>
    </message>
    <message>
        <source>there is no network connection</source>
        <translation>não há conexão de rede</translation>
    </message>
    <message>
        <source>no update address is set</source>
        <translation>nenhum endereço de atualização definido</translation>
    </message>
    <message>
        <source>the update address is not valid</source>
        <translation>o endereço de atualização não é válido</translation>
    </message>
    <message>
        <source>the server gave no answer</source>
        <translation>o servidor não respondeu</translation>
    </message>
    <message>
        <source>the server&apos;s answer holds no version</source>
        <translation>a resposta do servidor não contém versão</translation>
    </message>
    <message>
        <source>this copy does not know its own version</source>
        <translation>esta cópia não conhece a própria versão</translation>
    </message>
</context>
<context>
    <name>QDownloadApp</name>
    <message>
        <source>Software Update</source>
        <translation>Atualização de software</translation>
    </message>
    <message>
        <source>Downloading Files</source>
        <translation>Baixando arquivos</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Time Elapsed: </source>
        <translation>Tempo decorrido: </translation>
    </message>
    <message>
        <source> sec </source>
        <translation> s </translation>
    </message>
    <message>
        <source> MB copied) </source>
        <translation> MB copiados) </translation>
    </message>
    <message>
        <source>Transfer Rate: </source>
        <translation>Taxa de transferência: </translation>
    </message>
    <message>
        <source> KB/sec </source>
        <translation> KB/s </translation>
    </message>
    <message>
        <source>The installer could not be started: </source>
        <translation>Não foi possível iniciar o instalador: </translation>
    </message>
    <message>
        <source>Update failed 

 Update failed due to partial download.</source>
        <translation>Falha na atualização 

 A atualização falhou porque o download ficou incompleto.</translation>
    </message>
</context>
<context>
    <name>QShowUpdate</name>
    <message>
        <source>Update</source>
        <translation>Atualizar</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancelar</translation>
    </message>
    <message>
        <source>A new minor update </source>
        <translation>Uma nova atualização secundária </translation>
    </message>
    <message>
        <source> is available. Click Update to proceed further.</source>
        <translation> está disponível. Clique em Atualizar para continuar.</translation>
    </message>
    <message>
        <source>A new major release </source>
        <translation>Uma nova versão principal </translation>
    </message>
</context>
<context>
    <name>ReferenceFileDlg</name>
    <message>
        <source>Browse</source>
        <translation>Procurar</translation>
    </message>
    <message>
        <source>Apply to all files of same format.</source>
        <translation>Aplicar a todos os arquivos do mesmo formato.</translation>
    </message>
    <message>
        <source>Repair</source>
        <translation>Reparar</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancelar</translation>
    </message>
    <message>
        <source>Add a sample video:</source>
        <translation>Adicionar um vídeo de amostra:</translation>
    </message>
    <message>
        <source>Add File</source>
        <translation>Adicionar arquivo</translation>
    </message>
</context>
<context>
    <name>ReferenceRepairedDlg</name>
    <message>
        <source>Video file repaired successfully!</source>
        <translation>Arquivo de vídeo reparado com sucesso!</translation>
    </message>
</context>
<context>
    <name>SaveDlgClass</name>
    <message>
        <source>Save repaired file at source location.</source>
        <translation>Salvar o arquivo reparado no local de origem.</translation>
    </message>
    <message>
        <source>Save file at custom location.</source>
        <translation>Salvar o arquivo em um local personalizado.</translation>
    </message>
    <message>
        <source>Browse</source>
        <translation>Procurar</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Salvar</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancelar</translation>
    </message>
    <message>
        <source>Reelwright </source>
        <translation>Reelwright </translation>
    </message>
    <message>
        <source>Select Folder</source>
        <translation>Selecionar pasta</translation>
    </message>
</context>
<context>
    <name>StopDlg</name>
    <message>
        <source>Yes</source>
        <translation>Sim</translation>
    </message>
    <message>
        <source>No</source>
        <translation>Não</translation>
    </message>
    <message>
        <source>Do you want to stop the current process?</source>
        <translation>Deseja interromper o processo atual?</translation>
    </message>
    <message>
        <source>You can&apos;t resume the process from this point. All the changes will be discarded. </source>
        <translation>Não será possível retomar o processo a partir deste ponto. Todas as alterações serão descartadas. </translation>
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
        <translation>Reelwright Reparo de vídeo</translation>
    </message>
    <message>
        <source>✕</source>
        <translation>✕</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Fechar</translation>
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
        <translation>Minimizar</translation>
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
        <translation>Sobre</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Ajuda</translation>
    </message>
    <message>
        <source>Update</source>
        <translation>Atualizar</translation>
    </message>
    <message>
        <source>Add Your Corrupt Videos to Repair</source>
        <translation>Adicione seus vídeos corrompidos para reparar</translation>
    </message>
    <message>
        <source>+</source>
        <translation>+</translation>
    </message>
    <message>
        <source>Add Videos</source>
        <translation>Adicionar vídeos</translation>
    </message>
    <message>
        <source>Repair Your Videos</source>
        <translation>Repare seus vídeos</translation>
    </message>
    <message>
        <source>Click &apos;Repair&apos; button to fix corrupted videos. This may take a while depending on the number of videos and their size</source>
        <translation>Clique em &apos;Reparar&apos; para corrigir os vídeos corrompidos. Isso pode levar algum tempo, dependendo do número de vídeos e do tamanho deles.</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>Selecionar tudo</translation>
    </message>
    <message>
        <source>List of video files</source>
        <translation>Lista de arquivos de vídeo</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>Adicionar</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Remover</translation>
    </message>
    <message>
        <source>Repair</source>
        <translation>Reparar</translation>
    </message>
    <message>
        <source>Repaired files will be saved at the source file location.</source>
        <translation>Os arquivos reparados serão salvos no local do arquivo de origem.</translation>
    </message>
    <message>
        <source>To change location</source>
        <translation>Para alterar o local</translation>
    </message>
    <message>
        <source>Click here</source>
        <translation>Clique aqui</translation>
    </message>
    <message>
        <source>Repairing selected videos</source>
        <translation>Reparando os vídeos selecionados</translation>
    </message>
    <message>
        <source>This may take a while, depending on the number of videos and their file size. Please wait while the process is completed.</source>
        <translation>Isso pode levar algum tempo, dependendo do número de vídeos e do tamanho dos arquivos. Aguarde enquanto o processo é concluído.</translation>
    </message>
    <message>
        <source>Overall Progress</source>
        <translation>Progresso geral</translation>
    </message>
    <message>
        <source>0%</source>
        <translation>0%</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Voltar</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Parar</translation>
    </message>
    <message>
        <source>Save Repaired Files</source>
        <translation>Salvar arquivos reparados</translation>
    </message>
    <message>
        <source>Preview</source>
        <translation>Visualizar</translation>
    </message>
    <message>
        <source>What is a reference file?</source>
        <translation>O que é um arquivo de referência?</translation>
    </message>
</context>
<context>
    <name>VideoRepairWindow</name>
    <message>
        <source>Completed</source>
        <translation>Concluído</translation>
    </message>
    <message>
        <source>Preview</source>
        <translation>Visualizar</translation>
    </message>
    <message>
        <source>Awaiting Action</source>
        <translation>Pendente</translation>
    </message>
    <message>
        <source>Advance Repair</source>
        <translation>Reparo avanç.</translation>
    </message>
    <message>
        <source>The sample video can&apos;t be read. Choose another sample video.</source>
        <translation>Não é possível ler o vídeo de amostra. Escolha outro vídeo de amostra.</translation>
    </message>
    <message>
        <source>Advance Repair Running</source>
        <translation>Reparo avançado em andamento</translation>
    </message>
    <message>
        <source>Please wait while the &apos;Advance Repair&apos; process is running.</source>
        <translation>Aguarde enquanto o &apos;Reparo avançado&apos; está em andamento.</translation>
    </message>
    <message>
        <source> File Name</source>
        <translation> Nome do arquivo</translation>
    </message>
    <message>
        <source> Path</source>
        <translation> Caminho</translation>
    </message>
    <message>
        <source> Size (MB)</source>
        <translation> Tamanho (MB)</translation>
    </message>
    <message>
        <source> Modified Date</source>
        <translation> Data de modificação</translation>
    </message>
    <message>
        <source> Created Date</source>
        <translation> Data de criação</translation>
    </message>
    <message>
        <source>Add File</source>
        <translation>Adicionar arquivo</translation>
    </message>
    <message>
        <source>Files already added to list will be skipped.</source>
        <translation>Os arquivos já adicionados à lista serão ignorados.</translation>
    </message>
    <message>
        <source>Repaired files will be saved at the source file location.</source>
        <translation>Os arquivos reparados serão salvos no local do arquivo de origem.</translation>
    </message>
    <message>
        <source>To change location</source>
        <translation>Para alterar o local</translation>
    </message>
    <message>
        <source>List of video files</source>
        <translation>Lista de arquivos de vídeo</translation>
    </message>
    <message>
        <source>No video player was found to preview the file. Install mpv or mplayer and try again.</source>
        <translation>Nenhum player de vídeo foi encontrado para visualizar o arquivo. Instale o mpv ou o mplayer e tente novamente.</translation>
    </message>
    <message>
        <source>Processing</source>
        <translation>Processando</translation>
    </message>
    <message>
        <source>Failed</source>
        <translation>Falhou</translation>
    </message>
    <message>
        <source>Aborted</source>
        <translation>Interrompido</translation>
    </message>
    <message>
        <source>Repair Process Completed</source>
        <translation>Processo de reparo concluído</translation>
    </message>
    <message>
        <source>Click on the &apos;Save Repaired Files&apos; to save all your repaired videos. Click the &apos;Preview&apos; under Action column to preview repaired videos. </source>
        <translation>Clique em &apos;Salvar arquivos reparados&apos; para salvar todos os vídeos reparados. Clique em &apos;Visualizar&apos; na coluna Ação para ver os vídeos reparados. </translation>
    </message>
    <message>
        <source>This video is severely damaged. Run advance repair option to repair it before saving.</source>
        <translation>Este vídeo está muito danificado. Execute o reparo avançado antes de salvá-lo.</translation>
    </message>
    <message>
        <source>This video is severely corrupted and cannot be repaired.</source>
        <translation>Este vídeo está muito corrompido e não pode ser reparado.</translation>
    </message>
    <message>
        <source>  Path</source>
        <translation>  Caminho</translation>
    </message>
    <message>
        <source> Status</source>
        <translation> Status</translation>
    </message>
    <message>
        <source> Action</source>
        <translation> Ação</translation>
    </message>
    <message>
        <source>Repairing selected videos</source>
        <translation>Reparando os vídeos selecionados</translation>
    </message>
    <message>
        <source>This may take a while, depending on the number of videos and their file size. Please wait while the process is completed.</source>
        <translation>Isso pode levar algum tempo, dependendo do número de vídeos e do tamanho dos arquivos. Aguarde enquanto o processo é concluído.</translation>
    </message>
    <message>
        <source>Queued</source>
        <translation>Na fila</translation>
    </message>
    <message>
        <source>Repairing </source>
        <translation>Reparando </translation>
    </message>
    <message>
        <source>This process will stop after processing the current file.</source>
        <translation>O processo será interrompido após o arquivo atual.</translation>
    </message>
    <message>
        <source>Do you want to stop the process?</source>
        <translation>Deseja interromper o processo?</translation>
    </message>
    <message>
        <source>Do you want to stop the current process?</source>
        <translation>Deseja interromper o processo atual?</translation>
    </message>
    <message>
        <source>You can&apos;t resume the process from this point. All the changes will be discarded. </source>
        <translation>Não será possível retomar o processo a partir deste ponto. Todas as alterações serão descartadas. </translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Sim</translation>
    </message>
    <message>
        <source>No</source>
        <translation>Não</translation>
    </message>
    <message>
        <source>Choose Location</source>
        <translation>Escolher local</translation>
    </message>
    <message>
        <source>Repair process completed.
Check &apos;Status&apos; column to view the repair outcome.</source>
        <translation>Processo de reparo concluído.
Verifique a coluna &apos;Status&apos; para ver o resultado.</translation>
    </message>
    <message>
        <source>Repaired files saved successfully.</source>
        <translation>Arquivos reparados salvos com sucesso.</translation>
    </message>
    <message>
        <source>Wait while repaired files are being saved.</source>
        <translation>Aguarde enquanto os arquivos reparados são salvos.</translation>
    </message>
    <message>
        <source>The chosen folder can&apos;t be found. Choose another folder.</source>
        <translation>A pasta escolhida não foi encontrada. Escolha outra pasta.</translation>
    </message>
    <message numerus="yes">
        <source>%n repaired file(s) could not be saved in the chosen folder. Check that the folder can be written to, or choose another one.</source>
        <translation>
            <numerusform>%n arquivo reparado não pôde ser salvo na pasta escolhida. Verifique se a pasta permite gravação ou escolha outra.</numerusform>
            <numerusform>%n arquivos reparados não puderam ser salvos na pasta escolhida. Verifique se a pasta permite gravação ou escolha outra.</numerusform>
        </translation>
    </message>
    <message>
        <source>Add Videos</source>
        <translation>Adicionar vídeos</translation>
    </message>
    <message>
        <source>Repair</source>
        <translation>Reparar</translation>
    </message>
    <message>
        <source>Save Repaired Files</source>
        <translation>Salvar arquivos reparados</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Parar</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>Adicionar</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Remover</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Voltar</translation>
    </message>
    <message>
        <source>Add Your Corrupt Videos to Repair</source>
        <translation>Adicione seus vídeos corrompidos para reparar</translation>
    </message>
    <message>
        <source>Repair Your Videos</source>
        <translation>Repare seus vídeos</translation>
    </message>
    <message>
        <source>Click &apos;Repair&apos; button to fix corrupted videos. This may take a while depending on the number of videos and their size</source>
        <translation>Clique em &apos;Reparar&apos; para corrigir os vídeos corrompidos. Isso pode levar algum tempo, dependendo do número de vídeos e do tamanho deles.</translation>
    </message>
    <message>
        <source>About</source>
        <translation>Sobre</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Ajuda</translation>
    </message>
    <message>
        <source>Update</source>
        <translation>Atualizar</translation>
    </message>
    <message>
        <source>Do you want to run advance repair on the severely corrupted video before leaving this page?</source>
        <translation>Deseja executar o reparo avançado no vídeo muito corrompido antes de sair desta página?</translation>
    </message>
    <message>
        <source>This action will clear repair results.
Do you want to go back to previous screen?</source>
        <translation>Esta ação apagará os resultados do reparo.
Deseja voltar à tela anterior?</translation>
    </message>
    <message>
        <source>Languages</source>
        <translation>Idiomas</translation>
    </message>
    <message>
        <source>More Tools</source>
        <translation>Mais ferramentas</translation>
    </message>
    <message>
        <source>Application Running! 
Please halt the current process to Exit.</source>
        <translation>Aplicativo em execução!
Interrompa o processo atual para sair.</translation>
    </message>
    <message>
        <source>Do you want to run advance repair on the severely corrupted files before exiting?</source>
        <translation>Deseja executar o reparo avançado nos arquivos muito danificados antes de sair?</translation>
    </message>
    <message>
        <source>Are you sure you want to exit?</source>
        <translation>Tem certeza de que deseja sair?</translation>
    </message>
    <message>
        <source>Recover Data</source>
        <translation>Recuperar dados</translation>
    </message>
    <message>
        <source>Repair Photo</source>
        <translation>Reparar fotos</translation>
    </message>
    <message>
        <source>Recover Photo</source>
        <translation>Recuperar fotos</translation>
    </message>
    <message>
        <source>Monitor Drive</source>
        <translation>Monitorar unidade</translation>
    </message>
    <message>
        <source>%1 frames</source>
        <translation>%1 quadros</translation>
    </message>
    <message>
        <source>%1 min %2 s of sound</source>
        <translation>%1 min %2 s de som</translation>
    </message>
    <message>
        <source>%1 s of sound</source>
        <translation>%1 s de som</translation>
    </message>
    <message>
        <source>%1 damaged bytes skipped</source>
        <translation>%1 bytes danificados ignorados</translation>
    </message>
    <message>
        <source>%1 unreadable bytes read as zeros</source>
        <translation>%1 bytes ilegíveis lidos como zeros</translation>
    </message>
    <message>
        <source>Adding videos: %1 in the list</source>
        <translation>Adicionando vídeos: %1 na lista</translation>
    </message>
    <message>
        <source>Skipped, not videos this program repairs: %1</source>
        <translation>Ignorados, não são vídeos que este programa repara: %1</translation>
    </message>
    <message>
        <source>Not found: %1</source>
        <translation>Não encontrado: %1</translation>
    </message>
    <message>
        <source>These files can no longer be found and are left out: %1</source>
        <translation>Estes arquivos não foram mais encontrados e ficam de fora: %1</translation>
    </message>
    <message>
        <source>The video player %1 could not be started.</source>
        <translation>Não foi possível iniciar o reprodutor de vídeo %1.</translation>
    </message>
    <message>
        <source>The video player %1 ended at once without showing the file.</source>
        <translation>O reprodutor de vídeo %1 fechou na hora sem mostrar o arquivo.</translation>
    </message>
    <message>
        <source>%1 could not be started.</source>
        <translation>Não foi possível iniciar %1.</translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <source>Reelwright is already running.</source>
        <translation>O Reelwright já está em execução.</translation>
    </message>
</context>
<context>
    <name>repairFinishDialog</name>
    <message>
        <source> Repair process completed.</source>
        <translation> Processo de reparo concluído.</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>What is a reference file?</source>
        <translation>O que é um arquivo de referência?</translation>
    </message>
</context>
</TS>
