<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US" sourcelanguage="zh_CN">
<context>
    <name>AboutQuillboxDialog</name>
    <message>
        <source>关于羽毛盒</source>
        <translation>About Quillbox</translation>
    </message>
    <message>
        <source>羽毛盒工作室</source>
        <translation>Quillbox Studio</translation>
    </message>
    <message>
        <source>版本:</source>
        <translation>Version: </translation>
    </message>
    <message>
        <source>羽毛盒官网</source>
        <translation>Quillbox website</translation>
    </message>
</context>
<context>
    <name>BaseApi</name>
    <message>
        <source>请检查网络链接是否正常</source>
        <translation>Please check that the network connection works</translation>
    </message>
</context>
<context>
    <name>CaptureScreen</name>
    <message>
        <source>拖动选取一块，按 Esc 离开</source>
        <translation>Drag out a piece; Esc leaves</translation>
    </message>
    <message>
        <source>save image</source>
        <translation>Save picture</translation>
    </message>
    <message>
        <source>无法保存文件:
%1</source>
        <translation>The file could not be saved:
%1</translation>
    </message>
    <message>
        <source>Images (*.png *.xpm *.jpg)</source>
        <translation>Pictures (*.png *.xpm *.jpg)</translation>
    </message>
</context>
<context>
    <name>CaptureScreenWindow</name>
    <message>
        <source>保存</source>
        <translation>Save</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>完成</source>
        <translation>Done</translation>
    </message>
</context>
<context>
    <name>CommandSender</name>
    <message>
        <source>正在发送，打印机不接收时窗口约 10 秒没有响应</source>
        <translation>Sending; the window may not respond for up to 10 s</translation>
    </message>
</context>
<context>
    <name>EditMainWindow</name>
    <message>
        <source>字体</source>
        <translation>Font</translation>
    </message>
    <message>
        <source>打印</source>
        <translation>Print</translation>
    </message>
    <message>
        <source>字体...</source>
        <translation>Font...</translation>
    </message>
    <message>
        <source>插入图片...</source>
        <translation>Insert picture...</translation>
    </message>
    <message>
        <source>截取屏幕</source>
        <translation>Capture the screen</translation>
    </message>
    <message>
        <source>更多</source>
        <translation>More</translation>
    </message>
</context>
<context>
    <name>EditorActions</name>
    <message>
        <source>撤销</source>
        <translation>Undo</translation>
    </message>
    <message>
        <source>重做</source>
        <translation>Redo</translation>
    </message>
    <message>
        <source>剪切</source>
        <translation>Cut</translation>
    </message>
    <message>
        <source>复制</source>
        <translation>Copy</translation>
    </message>
    <message>
        <source>粘贴</source>
        <translation>Paste</translation>
    </message>
    <message>
        <source>全选</source>
        <translation>Select all</translation>
    </message>
    <message>
        <source>加粗</source>
        <translation>Bold</translation>
    </message>
    <message>
        <source>斜体</source>
        <translation>Italic</translation>
    </message>
    <message>
        <source>下划线</source>
        <translation>Underline</translation>
    </message>
    <message>
        <source>左对齐</source>
        <translation>Align left</translation>
    </message>
    <message>
        <source>居中</source>
        <translation>Centre</translation>
    </message>
    <message>
        <source>右对齐</source>
        <translation>Align right</translation>
    </message>
    <message>
        <source>减小字号</source>
        <translation>Smaller text</translation>
    </message>
    <message>
        <source>增大字号</source>
        <translation>Larger text</translation>
    </message>
</context>
<context>
    <name>FileActions</name>
    <message>
        <source>新建</source>
        <translation>New</translation>
    </message>
    <message>
        <source>打开...</source>
        <translation>Open...</translation>
    </message>
    <message>
        <source>保存...</source>
        <translation>Save...</translation>
    </message>
    <message>
        <source>打开页面</source>
        <translation>Open page</translation>
    </message>
    <message>
        <source>页面 (*.html *.htm)</source>
        <translation>Pages (*.html *.htm)</translation>
    </message>
    <message>
        <source>保存页面</source>
        <translation>Save page</translation>
    </message>
    <message>
        <source>无法打开文件:
%1
%2</source>
        <translation>The file could not be opened:
%1
%2</translation>
    </message>
    <message>
        <source>无法保存文件:
%1
%2</source>
        <translation>The file could not be saved:
%1
%2</translation>
    </message>
    <message>
        <source>页面</source>
        <translation>Page</translation>
    </message>
    <message>
        <source>文件或其中的图片太大。</source>
        <translation>The file, or a picture in it, is too large.</translation>
    </message>
    <message>
        <source>文件不是页面 (HTML)，或其文字无法识别。</source>
        <translation>The file is no page (HTML), or its text is in an unknown encoding.</translation>
    </message>
    <message>
        <source>文件已损坏或不完整。</source>
        <translation>The file is damaged or incomplete.</translation>
    </message>
    <message>
        <source>文件由其他版本的羽毛盒保存，请更新后再打开。</source>
        <translation>The file was saved by another version of Quillbox. Update Quillbox to open it.</translation>
    </message>
    <message>
        <source>文件不存在或无法读取。</source>
        <translation>The file does not exist or cannot be read.</translation>
    </message>
    <message>
        <source>消息提示</source>
        <translation>Message</translation>
    </message>
    <message>
        <source>打开草稿或页面</source>
        <translation>Open draft or page</translation>
    </message>
</context>
<context>
    <name>FontSizeBox</name>
    <message>
        <source>字号</source>
        <translation>Font size</translation>
    </message>
</context>
<context>
    <name>FrameLogModel</name>
    <message>
        <source>打印数据</source>
        <translation>Print data</translation>
    </message>
    <message>
        <source>查询固件版本</source>
        <translation>Query firmware version</translation>
    </message>
    <message>
        <source>查询型号</source>
        <translation>Query model</translation>
    </message>
    <message>
        <source>查询蓝牙地址</source>
        <translation>Query Bluetooth address</translation>
    </message>
    <message>
        <source>查询序列号</source>
        <translation>Query serial number</translation>
    </message>
    <message>
        <source>查询状态</source>
        <translation>Query status</translation>
    </message>
    <message>
        <source>查询电池电压</source>
        <translation>Query battery voltage</translation>
    </message>
    <message>
        <source>查询电池状态</source>
        <translation>Query battery state</translation>
    </message>
    <message>
        <source>查询打印头温度</source>
        <translation>Query head temperature</translation>
    </message>
    <message>
        <source>查询工厂标记</source>
        <translation>Query factory mark</translation>
    </message>
    <message>
        <source>查询蓝牙状态</source>
        <translation>Query Bluetooth state</translation>
    </message>
    <message>
        <source>设置密钥</source>
        <translation>Set key</translation>
    </message>
    <message>
        <source>走纸</source>
        <translation>Feed paper</translation>
    </message>
    <message>
        <source>打印自检页</source>
        <translation>Print self-test page</translation>
    </message>
    <message>
        <source>查询浓度</source>
        <translation>Query density</translation>
    </message>
    <message>
        <source>查询自动关机时间</source>
        <translation>Query auto power-off time</translation>
    </message>
    <message>
        <source>查询主板版本</source>
        <translation>Query board version</translation>
    </message>
    <message>
        <source>查询硬件信息</source>
        <translation>Query hardware information</translation>
    </message>
    <message>
        <source>查询最大间隙</source>
        <translation>Query maximum gap</translation>
    </message>
    <message>
        <source>查询纸张类型</source>
        <translation>Query paper type</translation>
    </message>
    <message>
        <source>查询国家代码</source>
        <translation>Query country code</translation>
    </message>
    <message>
        <source>查询打印模式</source>
        <translation>Query print mode</translation>
    </message>
    <message>
        <source>查询打印长度</source>
        <translation>Query printed length</translation>
    </message>
    <message>
        <source>未知命令</source>
        <translation>Unknown command</translation>
    </message>
    <message>
        <source>正确</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>✗ 错误</source>
        <translation>✗ Bad</translation>
    </message>
    <message>
        <source>CRC 与数据不符，打印机忽略了这一帧</source>
        <translation>The CRC does not match the data; the printer ignored this frame</translation>
    </message>
    <message>
        <source>时间</source>
        <translation>Time</translation>
    </message>
    <message>
        <source>代码</source>
        <translation>Code</translation>
    </message>
    <message>
        <source>含义</source>
        <translation>Meaning</translation>
    </message>
    <message>
        <source>标记</source>
        <translation>Tag</translation>
    </message>
    <message>
        <source>长度</source>
        <translation>Length</translation>
    </message>
    <message>
        <source>CRC</source>
        <translation>CRC</translation>
    </message>
</context>
<context>
    <name>LanguageSwitch</name>
    <message>
        <source>zh_CN</source>
        <translation>en_WW</translation>
    </message>
</context>
<context>
    <name>LanguageWindow</name>
    <message>
        <source>Form</source>
        <translation>Language</translation>
    </message>
    <message>
        <source>中文</source>
        <translation>中文</translation>
    </message>
    <message>
        <source>English</source>
        <translation>English</translation>
    </message>
    <message>
        <source>这是一段翻译</source>
        <translation>A sample text</translation>
    </message>
    <message>
        <source>打印机型号</source>
        <translation>Printer model</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>羽毛盒</source>
        <translation>Quillbox</translation>
    </message>
    <message>
        <source>关于</source>
        <translation>About</translation>
    </message>
    <message>
        <source>关于羽毛盒</source>
        <translation>About Quillbox</translation>
    </message>
    <message>
        <source>检查更新</source>
        <translation>Check for updates</translation>
    </message>
    <message>
        <source>已是最新版本（%1）</source>
        <translation>This is the newest version (%1)</translation>
    </message>
    <message>
        <source>消息提示</source>
        <translation>Message</translation>
    </message>
    <message>
        <source>选择图片</source>
        <translation>Choose a picture</translation>
    </message>
    <message>
        <source>Images (*.png *.bmp *.jpg *.tif *.GIF *.jpeg)</source>
        <translation>Pictures (*.png *.bmp *.jpg *.tif *.GIF *.jpeg)</translation>
    </message>
    <message>
        <source>设备连接中,请稍后...</source>
        <translation>Connecting to
the printer…</translation>
    </message>
    <message>
        <source>正在连接打印机，请稍候再打印</source>
        <translation>Connecting to the printer; print in a moment</translation>
    </message>
    <message>
        <source>正在打印，请等待完成或取消</source>
        <translation>Printing; wait until it is done, or cancel it</translation>
    </message>
</context>
<context>
    <name>PageWriter</name>
    <message>
        <source>有一张图片无法保存</source>
        <translation>A picture could not be saved</translation>
    </message>
    <message>
        <source>页面太大</source>
        <translation>The page is too large</translation>
    </message>
    <message>
        <source>文件没有写完，磁盘可能已满</source>
        <translation>The file could not be finished; the disk may be full</translation>
    </message>
</context>
<context>
    <name>PaperWindow</name>
    <message>
        <source>模拟打印机</source>
        <translation>Simulated printer</translation>
    </message>
    <message>
        <source>型号</source>
        <translation>Model</translation>
    </message>
    <message>
        <source>换上一台 Quillbox_K1：每行 384 点，宽 48 毫米</source>
        <translation>Switch to a Quillbox_K1: 384 dots a line, 48 mm wide</translation>
    </message>
    <message>
        <source>换上一台 Quillbox_K2：每行 576 点，宽 72 毫米</source>
        <translation>Switch to a Quillbox_K2: 576 dots a line, 72 mm wide</translation>
    </message>
    <message>
        <source>USB 已插入</source>
        <translation>USB plugged in</translation>
    </message>
    <message>
        <source>插上或拔下打印机的 USB 线</source>
        <translation>Plug or unplug the printer&apos;s USB cable</translation>
    </message>
    <message>
        <source>状态</source>
        <translation>State</translation>
    </message>
    <message>
        <source>就绪</source>
        <translation>Ready</translation>
    </message>
    <message>
        <source>打印机正常打印</source>
        <translation>The printer prints</translation>
    </message>
    <message>
        <source>缺纸</source>
        <translation>No paper</translation>
    </message>
    <message>
        <source>打印机报告缺纸，收到的内容不会打印</source>
        <translation>The printer reports that it is out of paper; what it receives is not printed</translation>
    </message>
    <message>
        <source>开盖</source>
        <translation>Cover open</translation>
    </message>
    <message>
        <source>打印机报告纸仓盖打开，收到的内容不会打印</source>
        <translation>The printer reports that its cover is open; what it receives is not printed</translation>
    </message>
    <message>
        <source>保存为 PNG...</source>
        <translation>Save as PNG...</translation>
    </message>
    <message>
        <source>把显示的纸保存为 PNG 图片</source>
        <translation>Save the paper shown as a PNG picture</translation>
    </message>
    <message>
        <source>撕下</source>
        <translation>Tear off</translation>
    </message>
    <message>
        <source>撕下显示的纸，从新的一张开始</source>
        <translation>Tear off the paper shown and begin a new sheet</translation>
    </message>
    <message>
        <source>缩小</source>
        <translation>Zoom out</translation>
    </message>
    <message>
        <source>恢复到 100 %</source>
        <translation>Back to 100 %</translation>
    </message>
    <message>
        <source>放大</source>
        <translation>Zoom in</translation>
    </message>
    <message>
        <source>适合宽度</source>
        <translation>Fit width</translation>
    </message>
    <message>
        <source>让纸与窗口同宽</source>
        <translation>Make the paper as wide as the window</translation>
    </message>
    <message>
        <source>打印纸</source>
        <translation>Paper</translation>
    </message>
    <message>
        <source>帧记录</source>
        <translation>Frames</translation>
    </message>
    <message>
        <source>清空</source>
        <translation>Clear</translation>
    </message>
    <message>
        <source>清空帧记录</source>
        <translation>Clear the frame log</translation>
    </message>
    <message>
        <source>USB 未插入</source>
        <translation>USB unplugged</translation>
    </message>
    <message>
        <source>正确的帧 %1</source>
        <translation>Correct frames %1</translation>
    </message>
    <message>
        <source>CRC 错误 %1</source>
        <translation>CRC errors %1</translation>
    </message>
    <message>
        <source>密钥交换 %1</source>
        <translation>Key exchanges %1</translation>
    </message>
    <message>
        <source>纸长 %1 点行 = %2 毫米</source>
        <translation>Paper %1 dot lines = %2 mm</translation>
    </message>
    <message>
        <source>纸还是空白的。
在编辑窗口里写点什么，再按打印，就会从这里出来。</source>
        <translation>The paper is still blank.
Write something in the editor and press Print; it comes out here.</translation>
    </message>
    <message>
        <source>保存打印纸</source>
        <translation>Save the paper</translation>
    </message>
    <message>
        <source>PNG 图片 (*.png)</source>
        <translation>PNG pictures (*.png)</translation>
    </message>
    <message>
        <source>已经没有纸了</source>
        <translation>There is no paper any more</translation>
    </message>
    <message>
        <source>无法保存 %1。</source>
        <translation>%1 could not be saved.</translation>
    </message>
    <message>
        <source>语言...</source>
        <translation>Language...</translation>
    </message>
    <message>
        <source>切换界面语言，选择型号</source>
        <translation>Switch the language, choose the model</translation>
    </message>
    <message>
        <source>诊断...</source>
        <translation>Diagnostics...</translation>
    </message>
    <message>
        <source>向打印机发送各种指令，测试网络和升级</source>
        <translation>Send the printer any command, test the network and the update</translation>
    </message>
</context>
<context>
    <name>PrintProgress</name>
    <message>
        <source>打印进度</source>
        <translation>Print progress</translation>
    </message>
    <message>
        <source>取消打印</source>
        <translation>Cancel printing</translation>
    </message>
</context>
<context>
    <name>PrinterReadThread</name>
    <message>
        <source>羽毛盒没纸了</source>
        <translation>Quillbox is out of paper</translation>
    </message>
    <message>
        <source>羽毛盒张嘴了</source>
        <translation>Quillbox&apos;s cover is open</translation>
    </message>
    <message>
        <source>羽毛盒复活了</source>
        <translation>Quillbox is ready again</translation>
    </message>
</context>
<context>
    <name>PrinterState</name>
    <message>
        <source>传输出错，请拔下打印机再重新插上</source>
        <translation>the transfer failed; unplug it and plug it in again</translation>
    </message>
    <message>
        <source>没有权限，请把 70-quillbox.rules 复制到 /etc/udev/rules.d 后重新插上</source>
        <translation>no permission; copy 70-quillbox.rules to /etc/udev/rules.d, then plug it in again</translation>
    </message>
    <message>
        <source>未插上</source>
        <translation>none plugged in</translation>
    </message>
    <message>
        <source>系统未能配置，请直接插到电脑的 USB 口</source>
        <translation>the system cannot set it up; plug it into a port of the computer itself</translation>
    </message>
    <message>
        <source>被其他程序占用</source>
        <translation>another program uses it</translation>
    </message>
    <message>
        <source>缺纸或上盖打开</source>
        <translation>out of paper or cover open</translation>
    </message>
    <message>
        <source>拒收数据，请关机后再开机</source>
        <translation>it refuses data; switch it off and on again</translation>
    </message>
    <message>
        <source>插上的不是这种打印机</source>
        <translation>what is plugged in is not a Quillbox</translation>
    </message>
    <message>
        <source>错误 %1</source>
        <translation>error %1</translation>
    </message>
    <message>
        <source>%1，就绪</source>
        <translation>%1, ready</translation>
    </message>
    <message>
        <source>按 %1 对待（它没有报告型号）</source>
        <translation>taken for a %1 (it has not told its model)</translation>
    </message>
    <message>
        <source>正在连接…</source>
        <translation>connecting…</translation>
    </message>
    <message>
        <source>打印机：%1</source>
        <translation>Printer: %1</translation>
    </message>
    <message>
        <source>程序文件夹中没有 portio.dll，请重新安装羽毛盒</source>
        <translation>portio.dll is missing from the program&apos;s folder; install Quillbox again</translation>
    </message>
    <message>
        <source>无法载入 portio.dll（损坏、非 32 位或缺文件），请重新安装羽毛盒</source>
        <translation>portio.dll cannot be loaded (damaged, not 32-bit, or it lacks a file); install Quillbox again</translation>
    </message>
    <message>
        <source>portio.dll 不是打印机接口库，请重新安装羽毛盒</source>
        <translation>portio.dll is not a library for a printer; install Quillbox again</translation>
    </message>
    <message>
        <source>Windows 未能配置，请在设备管理器中为它选择 WinUSB 驱动，或直接插到电脑的 USB 口</source>
        <translation>Windows cannot set it up; choose the WinUSB driver in the Device Manager, or use a port of the computer itself</translation>
    </message>
    <message>
        <source>没有可用的驱动，请在设备管理器中为它选择 WinUSB 驱动</source>
        <translation>no driver that Quillbox can use; choose the WinUSB driver in the Device Manager</translation>
    </message>
</context>
<context>
    <name>PrinterThread</name>
    <message>
        <source>连接失败,请尝试
1.检查设备是否开启
2.检查设备是否连接
3.重新插拔USB</source>
        <translation>Could not connect. Please:
1. Check that the device is on
2. Check that it is connected
3. Unplug the USB cable and plug it in again</translation>
    </message>
    <message>
        <source>连接失败,重新启动APP</source>
        <translation>Could not connect. Please restart the app.</translation>
    </message>
</context>
<context>
    <name>Progress_Cat_Running_Dialog</name>
    <message>
        <source>羽毛盒</source>
        <translation>Quillbox</translation>
    </message>
    <message>
        <source>加载中，请稍后...</source>
        <translation>Loading...</translation>
    </message>
</context>
<context>
    <name>TestDeviceCommandWindow</name>
    <message>
        <source>测试--设备指令</source>
        <translation>Test: device commands</translation>
    </message>
    <message>
        <source>打印空白行 100行</source>
        <translation>Feed 100 blank lines</translation>
    </message>
    <message>
        <source>打印自检页字符</source>
        <translation>Print the self-test page</translation>
    </message>
    <message>
        <source>app获取VERSION</source>
        <translation>Firmware version</translation>
    </message>
    <message>
        <source>app获取设备型号</source>
        <translation>Device model</translation>
    </message>
    <message>
        <source>app获取蓝牙MAC</source>
        <translation>Bluetooth MAC</translation>
    </message>
    <message>
        <source>app获取打印机序列号</source>
        <translation>Serial number</translation>
    </message>
    <message>
        <source>app获取打印机状态</source>
        <translation>Printer status</translation>
    </message>
    <message>
        <source>app获取打印机电池电压</source>
        <translation>Battery voltage</translation>
    </message>
    <message>
        <source>app获取打印机电池电压状态</source>
        <translation>Battery voltage state</translation>
    </message>
    <message>
        <source>app获取打印机TPH温度</source>
        <translation>Print-head temperature</translation>
    </message>
    <message>
        <source>app获取打印机出厂标示</source>
        <translation>Factory mark</translation>
    </message>
    <message>
        <source>打印机发送蓝牙状态</source>
        <translation>Send the Bluetooth state</translation>
    </message>
    <message>
        <source>app获取打印机浓度</source>
        <translation>Print density</translation>
    </message>
    <message>
        <source>app获取关机时间</source>
        <translation>Auto power-off time</translation>
    </message>
    <message>
        <source>获取主板版本</source>
        <translation>Mainboard version</translation>
    </message>
    <message>
        <source>获取硬件信息</source>
        <translation>Hardware information</translation>
    </message>
    <message>
        <source>获取最大缝的长度</source>
        <translation>Maximum gap length</translation>
    </message>
    <message>
        <source>app获取纸张类型</source>
        <translation>Paper type</translation>
    </message>
    <message>
        <source>获取国家代码</source>
        <translation>Country code</translation>
    </message>
    <message>
        <source>获取打印模式（k1s）</source>
        <translation>Print mode (k1s)</translation>
    </message>
    <message>
        <source>获取已打印长度</source>
        <translation>Printed length</translation>
    </message>
    <message>
        <source>-&gt;时间 : </source>
        <translation>-&gt;Time : </translation>
    </message>
    <message>
        <source>标识头 : 0x</source>
        <translation>Tag : 0x</translation>
    </message>
    <message>
        <source>消息体 : %1</source>
        <translation>Body : %1</translation>
    </message>
</context>
<context>
    <name>TestMainWindow</name>
    <message>
        <source>诊断</source>
        <translation>Diagnostics</translation>
    </message>
    <message>
        <source>测试--多语言</source>
        <translation>Test: languages</translation>
    </message>
    <message>
        <source>测试--设备指令</source>
        <translation>Test: device commands</translation>
    </message>
    <message>
        <source>测试--网络请求</source>
        <translation>Test: network calls</translation>
    </message>
    <message>
        <source>测试-版本升级</source>
        <translation>Test: update</translation>
    </message>
    <message>
        <source>测试--动态走纸指令</source>
        <translation>Test: paper feed</translation>
    </message>
</context>
<context>
    <name>TestNetworkWindow</name>
    <message>
        <source>测试--网络请求</source>
        <translation>Test: network calls</translation>
    </message>
    <message>
        <source>用户名：</source>
        <translation>User name:</translation>
    </message>
    <message>
        <source>密码：</source>
        <translation>Password:</translation>
    </message>
    <message>
        <source>登录</source>
        <translation>Log in</translation>
    </message>
    <message>
        <source>检查版本</source>
        <translation>Check version</translation>
    </message>
    <message>
        <source>收发记录</source>
        <translation>Sent and received</translation>
    </message>
    <message>
        <source>明文</source>
        <translation>Plain text</translation>
    </message>
    <message>
        <source>密文</source>
        <translation>Cipher text</translation>
    </message>
</context>
<context>
    <name>TestSendEmptyLine</name>
    <message>
        <source>测试--动态走纸指令</source>
        <translation>Test: paper feed</translation>
    </message>
    <message>
        <source>请输入打印行数：</source>
        <translation>Blank lines to feed:</translation>
    </message>
    <message>
        <source>发送打印</source>
        <translation>Send</translation>
    </message>
</context>
<context>
    <name>TestUpgradeWindow</name>
    <message>
        <source>测试-版本升级</source>
        <translation>Test: update</translation>
    </message>
    <message>
        <source>文件名前缀：</source>
        <translation>File name prefix:</translation>
    </message>
    <message>
        <source>下载地址：</source>
        <translation>Download address:</translation>
    </message>
    <message>
        <source>版本号：</source>
        <translation>Version code:</translation>
    </message>
    <message>
        <source>版本名称：</source>
        <translation>Version name:</translation>
    </message>
    <message>
        <source>更新说明：</source>
        <translation>Release notes:</translation>
    </message>
    <message>
        <source>必须升级</source>
        <translation>Mandatory</translation>
    </message>
    <message>
        <source>打开升级窗口</source>
        <translation>Open the update window</translation>
    </message>
</context>
<context>
    <name>UpgradeAppWindow</name>
    <message>
        <source>版本升级</source>
        <translation>Update</translation>
    </message>
    <message>
        <source>以后再说</source>
        <translation>Later</translation>
    </message>
    <message>
        <source>立即更新</source>
        <translation>Update now</translation>
    </message>
    <message>
        <source>更新版本:</source>
        <translation>New version: </translation>
    </message>
    <message>
        <source>save file</source>
        <translation>Save file</translation>
    </message>
</context>
<context>
    <name>UpgradeDialog</name>
    <message>
        <source>羽毛盒版本升级</source>
        <translation>Quillbox update</translation>
    </message>
    <message>
        <source>下载中，请稍后</source>
        <translation>Downloading, please wait</translation>
    </message>
    <message>
        <source>重新下载</source>
        <translation>Download again</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>参数错误</source>
        <translation>The address or the file name is missing</translation>
    </message>
    <message>
        <source>%1/秒</source>
        <translation>%1/s</translation>
    </message>
    <message>
        <source>下载完成，是否打开文件?</source>
        <translation>Download finished. Open it?</translation>
    </message>
</context>
<context>
    <name>WelcomeWindow</name>
    <message>
        <source>羽毛盒</source>
        <translation>Quillbox</translation>
    </message>
    <message>
        <source>Welcome to quillbox</source>
        <translation>Welcome to Quillbox</translation>
    </message>
</context>
</TS>
