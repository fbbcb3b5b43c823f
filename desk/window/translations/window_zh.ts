<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN">
    <context>
        <name>columns</name>
        <message>
            <source>State</source>
            <translation>状态</translation>
        </message>
        <message>
            <source>Ch.</source>
            <translation>通道</translation>
        </message>
        <message>
            <source>Name</source>
            <translation>名称</translation>
        </message>
        <message>
            <source>Source</source>
            <translation>来源</translation>
        </message>
        <message>
            <source>Family</source>
            <translation>品种</translation>
        </message>
        <message>
            <source>Accounts</source>
            <translation>账号</translation>
        </message>
        <message>
            <source>File or address</source>
            <translation>文件或地址</translation>
        </message>
        <message>
            <source>Time</source>
            <translation>时间</translation>
        </message>
        <message>
            <source>Order</source>
            <translation>委托号</translation>
        </message>
        <message>
            <source>Task</source>
            <translation>任务</translation>
        </message>
        <message>
            <source>Account</source>
            <translation>账号</translation>
        </message>
        <message>
            <source>Code</source>
            <translation>代码</translation>
        </message>
        <message>
            <source>Side</source>
            <translation>方向</translation>
        </message>
        <message>
            <source>Volume</source>
            <translation>数量</translation>
        </message>
        <message>
            <source>Filled</source>
            <translation>成交量</translation>
        </message>
        <message>
            <source>Price</source>
            <translation>价格</translation>
        </message>
        <message>
            <source>Filled at</source>
            <translation>成交价</translation>
        </message>
        <message>
            <source>Reason</source>
            <translation>原因</translation>
        </message>
        <message>
            <source>Orders</source>
            <translation>委托数</translation>
        </message>
        <message>
            <source>Waiting</source>
            <translation>等待</translation>
        </message>
        <message>
            <source>Cancelled</source>
            <translation>已撤</translation>
        </message>
        <message>
            <source>Rejected</source>
            <translation>废单</translation>
        </message>
        <message>
            <source>Remark</source>
            <translation>备注</translation>
        </message>
        <message>
            <source>Fill</source>
            <translation>成交号</translation>
        </message>
        <message>
            <source>Held</source>
            <translation>持仓</translation>
        </message>
        <message>
            <source>Can sell</source>
            <translation>可卖</translation>
        </message>
        <message>
            <source>Cost</source>
            <translation>成本</translation>
        </message>
        <message>
            <source>Last</source>
            <translation>最新</translation>
        </message>
        <message>
            <source>P&amp;L %</source>
            <translation>盈亏 %</translation>
        </message>
        <message>
            <source>Bid</source>
            <translation>买价</translation>
        </message>
        <message>
            <source>Ask</source>
            <translation>卖价</translation>
        </message>
        <message>
            <source>Level</source>
            <translation>档位</translation>
        </message>
        <message>
            <source>Kind</source>
            <translation>种类</translation>
        </message>
        <message>
            <source>Text</source>
            <translation>内容</translation>
        </message>
        <message>
            <source>No.</source>
            <translation>序号</translation>
        </message>
        <message>
            <source>Record</source>
            <translation>记录</translation>
        </message>
        <message>
            <source>Severity</source>
            <translation>级别</translation>
        </message>
        <message>
            <source>Changed</source>
            <translation>变动时间</translation>
        </message>
        <message>
            <source>All filled</source>
            <translation>已成交数</translation>
        </message>
        <message>
            <source>In shares; derivatives in contracts</source>
            <translation>单位: 股, 衍生品为张或手</translation>
        </message>
        <message>
            <source>In ¥; index futures in points</source>
            <translation>单位: 元, 股指期货为点</translation>
        </message>
        <message>
            <source>Amount ¥</source>
            <translation>金额(元)</translation>
        </message>
        <message>
            <source>Available ¥</source>
            <translation>可用(元)</translation>
        </message>
        <message>
            <source>Frozen ¥</source>
            <translation>冻结(元)</translation>
        </message>
        <message>
            <source>Equity ¥</source>
            <translation>权益(元)</translation>
        </message>
        <message>
            <source>Open P&amp;L ¥</source>
            <translation>浮盈(元)</translation>
        </message>
        <message>
            <source>This run ¥</source>
            <translation>本次(元)</translation>
        </message>
        <message>
            <source>Value ¥</source>
            <translation>市值(元)</translation>
        </message>
        <message>
            <source>P&amp;L ¥</source>
            <translation>盈亏(元)</translation>
        </message>
        <message>
            <source>Chg %</source>
            <translation>涨跌 %</translation>
        </message>
    </context>
    <context>
        <name>desk::CFilterHeader</name>
        <message>
            <source>filter</source>
            <translation>筛选</translation>
        </message>
        <message>
            <source>Shows only rows that contain this text. Numbers: &gt;100, &lt;100, =100; a whole number finds only itself</source>
            <translation>只显示含有此文字的行。数字: &gt;100, &lt;100, =100; 整数只匹配相等的值</translation>
        </message>
    </context>
    <context>
        <name>desk::CMainWindow</name>
        <message>
            <source>Strategies</source>
            <translation>策略</translation>
        </message>
        <message>
            <source>No strategy. Add one with Insert, or write strategies.toml.</source>
            <translation>没有策略。按 Insert 添加, 或写入 strategies.toml。</translation>
        </message>
        <message>
            <source>Accounts</source>
            <translation>账号</translation>
        </message>
        <message>
            <source>No account. Write one to desk.toml.</source>
            <translation>没有账号。请写入 desk.toml。</translation>
        </message>
        <message>
            <source>Book</source>
            <translation>盘口</translation>
        </message>
        <message>
            <source>No instrument. Choose one with Enter in Quotes, Orders or Positions.</source>
            <translation>未选合约。在行情、委托或持仓中按回车选择。</translation>
        </message>
        <message>
            <source>Quotes</source>
            <translation>行情</translation>
        </message>
        <message>
            <source>No instrument. Write one to instruments.csv.</source>
            <translation>没有合约。请写入 instruments.csv。</translation>
        </message>
        <message>
            <source>Orders</source>
            <translation>委托</translation>
        </message>
        <message>
            <source>No order yet. Start a strategy (F2, Enter) and hand it an order file.</source>
            <translation>还没有委托。启动一个策略 (F2, 回车), 并交给它一个文件单。</translation>
        </message>
        <message>
            <source>Tasks</source>
            <translation>任务</translation>
        </message>
        <message>
            <source>No task yet. Each command of an order becomes a task.</source>
            <translation>还没有任务。每条指令成为一个任务。</translation>
        </message>
        <message>
            <source>Fills</source>
            <translation>成交</translation>
        </message>
        <message>
            <source>No fill yet. An order is filled when the book has its price.</source>
            <translation>还没有成交。盘口有委托的价格时成交。</translation>
        </message>
        <message>
            <source>Positions</source>
            <translation>持仓</translation>
        </message>
        <message>
            <source>No position. A filled buy makes one.</source>
            <translation>没有持仓。买入成交后产生持仓。</translation>
        </message>
        <message>
            <source>Messages</source>
            <translation>消息</translation>
        </message>
        <message>
            <source>No message yet.</source>
            <translation>还没有消息。</translation>
        </message>
        <message>
            <source>Journal</source>
            <translation>日志</translation>
        </message>
        <message>
            <source>No record yet in this run. orderdesk journal shows earlier ones.</source>
            <translation>本次运行还没有记录。orderdesk journal 显示以前的记录。</translation>
        </message>
        <message>
            <source>Book: %1 %2</source>
            <translation>盘口: %1 %2</translation>
        </message>
        <message numerus="yes">
            <source> (%n row(s) hidden)</source>
            <translation>
                <numerusform> (隐藏%n行)</numerusform>
            </translation>
        </message>
        <message numerus="yes">
            <source> (%n REJECTED)</source>
            <translation>
                <numerusform> (%n笔废单)</numerusform>
            </translation>
        </message>
        <message>
            <source>No</source>
            <translation>否</translation>
        </message>
        <message>
            <source>Close the desk?</source>
            <translation>关闭交易台?</translation>
        </message>
        <message>
            <source>Close the desk</source>
            <translation>关闭交易台</translation>
        </message>
        <message>
            <source>&amp;Desk</source>
            <translation>交易台(&amp;D)</translation>
        </message>
        <message>
            <source>&amp;Halt or resume...</source>
            <translation>停止或恢复(&amp;H)...</translation>
        </message>
        <message>
            <source>&amp;Close</source>
            <translation>关闭(&amp;C)</translation>
        </message>
        <message>
            <source>&amp;Strategies</source>
            <translation>策略(&amp;S)</translation>
        </message>
        <message>
            <source>&amp;Add...</source>
            <translation>添加(&amp;A)...</translation>
        </message>
        <message>
            <source>&amp;Change...</source>
            <translation>修改(&amp;C)...</translation>
        </message>
        <message>
            <source>&amp;Remove...</source>
            <translation>删除(&amp;R)...</translation>
        </message>
        <message>
            <source>&amp;Orders</source>
            <translation>委托(&amp;O)</translation>
        </message>
        <message>
            <source>&amp;Cancel the selected orders...</source>
            <translation>撤销所选委托(&amp;C)...</translation>
        </message>
        <message>
            <source>Cancel the selected &amp;tasks...</source>
            <translation>撤销所选任务(&amp;T)...</translation>
        </message>
        <message>
            <source>Cancel all of the selected &amp;accounts...</source>
            <translation>撤销所选账号的全部委托(&amp;A)...</translation>
        </message>
        <message>
            <source>&amp;View</source>
            <translation>查看(&amp;V)</translation>
        </message>
        <message>
            <source>&amp;Positions</source>
            <translation>持仓(&amp;P)</translation>
        </message>
        <message>
            <source>&amp;Messages</source>
            <translation>消息(&amp;M)</translation>
        </message>
        <message>
            <source>&amp;Filter</source>
            <translation>筛选(&amp;F)</translation>
        </message>
        <message>
            <source>&amp;Dark colours</source>
            <translation>深色(&amp;D)</translation>
        </message>
        <message>
            <source>&amp;Red is up</source>
            <translation>红涨绿跌(&amp;R)</translation>
        </message>
        <message>
            <source>De&amp;fault layout</source>
            <translation>默认布局(&amp;F)</translation>
        </message>
        <message>
            <source>Strategy %1: %2</source>
            <translation>策略%1: %2</translation>
        </message>
        <message>
            <source>Stop strategy %1 before you change it.</source>
            <translation>请先停止策略%1, 再修改。</translation>
        </message>
        <message numerus="yes">
            <source>Remove %n strategy(s)? Channels: %1</source>
            <translation>
                <numerusform>删除%n个策略? 通道: %1</numerusform>
            </translation>
        </message>
        <message>
            <source>Remove strategies</source>
            <translation>删除策略</translation>
        </message>
        <message>
            <source>Remove</source>
            <translation>删除</translation>
        </message>
        <message>
            <source>None of the selected rows has a waiting order.</source>
            <translation>所选的行没有等待成交的委托。</translation>
        </message>
        <message>
            <source>Cancel orders</source>
            <translation>撤单</translation>
        </message>
        <message>
            <source>Cancel the orders</source>
            <translation>撤销委托</translation>
        </message>
        <message>
            <source>Cancel tasks</source>
            <translation>撤销任务</translation>
        </message>
        <message>
            <source>Cancel the tasks</source>
            <translation>撤销任务</translation>
        </message>
        <message>
            <source>Resume?</source>
            <translation>恢复?</translation>
        </message>
        <message>
            <source>Resume</source>
            <translation>恢复</translation>
        </message>
        <message>
            <source>Halt</source>
            <translation>停止</translation>
        </message>
        <message>
            <source>HALT</source>
            <translation>停止交易</translation>
        </message>
        <message>
            <source>An order file waits at %1. The start deletes it unread.</source>
            <translation>%1 有等待的文件单。启动会不读取就删除它。</translation>
        </message>
        <message>
            <source>Start strategy %1?</source>
            <translation>启动策略%1?</translation>
        </message>
        <message>
            <source>Delete and start</source>
            <translation>删除并启动</translation>
        </message>
        <message>
            <source>it cannot be done now; the strategy may have been changed meanwhile</source>
            <translation>现在无法执行; 策略可能已被更改</translation>
        </message>
        <message>
            <source>%1: %2 %3, %4 left at %5</source>
            <translation>%1: %2 %3, 剩余%4, 价格%5</translation>
        </message>
        <message>
            <source>the market price</source>
            <translation>市价</translation>
        </message>
        <message>
            <source>&amp;Start (Enter)</source>
            <translation>启动 (回车)(&amp;S)</translation>
        </message>
        <message>
            <source>St&amp;op (Space)</source>
            <translation>停止 (空格)(&amp;O)</translation>
        </message>
        <message>
            <source>The table %1 is there already. The start reads it and sends its orders.</source>
            <translation>委托表 %1 已存在。启动会读取它, 并发出其中的委托。</translation>
        </message>
        <message>
            <source>Read and start</source>
            <translation>读取并启动</translation>
        </message>
        <message>
            <source>it is not there any more</source>
            <translation>策略已不存在</translation>
        </message>
        <message numerus="yes">
            <source>%n of them run(s) and is/are stopped first.</source>
            <translation>
                <numerusform>其中%n个正在运行, 将先停止。</numerusform>
            </translation>
        </message>
        <message numerus="yes">
            <source>Cancel %n waiting order(s) of %1?</source>
            <translation>
                <numerusform>撤销%1的%n笔等待成交的委托?</numerusform>
            </translation>
        </message>
        <message numerus="yes">
            <source>%n task(s):</source>
            <translation>
                <numerusform>%n个任务:</numerusform>
            </translation>
        </message>
        <message numerus="yes">
            <source>%n line(s) were left out here, because too many came at once. The journal has the records.</source>
            <translation>
                <numerusform>同时到达的消息过多, 此处略去%n行。日志有全部记录。</numerusform>
            </translation>
        </message>
        <message>
            <source>%1 is not in instruments.csv, so it has no quotes.</source>
            <translation>%1 不在 instruments.csv 中, 因此没有行情。</translation>
        </message>
        <message numerus="yes">
            <source> (%n WARNING(S))</source>
            <translation>
                <numerusform> (%n条警告)</numerusform>
            </translation>
        </message>
        <message>
            <source>Plots</source>
            <translation>图表</translation>
        </message>
        <message>
            <source>NOT READ: %1 (%2)</source>
            <translation>未读取: %1 (%2)</translation>
        </message>
        <message numerus="yes">
            <source>%n strategy(s) run.</source>
            <translation>
                <numerusform>%n个策略在运行。</numerusform>
            </translation>
        </message>
        <message numerus="yes">
            <source>%n accepted order(s) are not processed yet. The desk still sends them before it ends. Until then the window stays and can discard them.</source>
            <translation>
                <numerusform>还有%n笔已接受的委托未处理。交易台会在结束前发出它们。在此之前窗口保持打开, 可以丢弃它们。</numerusform>
            </translation>
        </message>
        <message numerus="yes">
            <source>%n order(s) wait and stay in the books.</source>
            <translation>
                <numerusform>%n笔委托等待成交, 保留在账上。</numerusform>
            </translation>
        </message>
        <message>
            <source>The batch that waits for your confirmation is declined.</source>
            <translation>等待您确认的批次将被拒绝。</translation>
        </message>
        <message>
            <source>The halt is not finished.</source>
            <translation>停止交易尚未完成。</translation>
        </message>
        <message>
            <source>Cancel all waiting orders of %1? The tables show %2 of them.</source>
            <translation>撤销%1的全部等待成交的委托? 表格中有其中%2笔。</translation>
        </message>
        <message numerus="yes">
            <source>%n order file(s) wait at their paths and are read now: %1. Before you agree, delete the files that must not be sent.</source>
            <translation>
                <numerusform>%n个文件单在其路径等待, 同意后立即读取: %1。请在同意前删除不应发出的文件。</numerusform>
            </translation>
        </message>
        <message>
            <source>Resume the intake?</source>
            <translation>恢复读取?</translation>
        </message>
        <message numerus="yes">
            <source>%n accepted order(s) are not processed yet. They are written to the journal and not sent.</source>
            <translation>
                <numerusform>还有%n笔已接受的委托未处理。它们将写入日志, 不会发出。</numerusform>
            </translation>
        </message>
        <message>
            <source>Discard the orders?</source>
            <translation>丢弃委托?</translation>
        </message>
        <message>
            <source>Discard</source>
            <translation>丢弃</translation>
        </message>
        <message>
            <source>&amp;Resume the intake...</source>
            <translation>恢复读取(&amp;R)...</translation>
        </message>
        <message>
            <source>Close the &amp;notice</source>
            <translation>关闭提示(&amp;N)</translation>
        </message>
        <message>
            <source>Sor&amp;t, copy, export...</source>
            <translation>排序、复制、导出(&amp;T)...</translation>
        </message>
        <message numerus="yes">
            <source>Cancel those of the %n selected order(s) that still wait? The tables show %1 of them, but they may be behind.</source>
            <translation>
                <numerusform>撤销所选%n笔委托中仍在等待的? 表格显示其中%1笔, 但表格可能落后。</numerusform>
            </translation>
        </message>
        <message numerus="yes">
            <source>Cancel the orders of the %n selected task(s) that still wait? The tables show %1 of them, but they may be behind.</source>
            <translation>
                <numerusform>撤销所选%n个任务中仍在等待的委托? 表格显示其中%1笔, 但表格可能落后。</numerusform>
            </translation>
        </message>
        <message numerus="yes">
            <source>%n waiting order(s)</source>
            <translation>
                <numerusform>%n笔等待成交的委托</numerusform>
            </translation>
        </message>
        <message numerus="yes">
            <source>%n account(s)</source>
            <translation>
                <numerusform>%n个账号</numerusform>
            </translation>
        </message>
        <message>
            <source>Halt the desk? It reads no more order files, declines all commands, and cancels %1 of %2. Ctrl+H resumes; cancelled orders stay cancelled.</source>
            <translation>停止交易? 交易台不再读取文件单, 拒绝所有指令, 并撤销%2的%1。Ctrl+H 恢复; 已撤销的委托不会恢复。</translation>
        </message>
        <message numerus="yes">
            <source>Files and sockets send orders again. %n strategy(s) run.</source>
            <translation>
                <numerusform>文件和端口恢复下单。%n个策略在运行。</numerusform>
            </translation>
        </message>
        <message numerus="yes">
            <source>%n accepted order(s) are not processed yet. The desk is halted: they are declined.</source>
            <translation>
                <numerusform>还有%n笔已接受的委托未处理。交易台已停止交易, 它们将被拒绝。</numerusform>
            </translation>
        </message>
        <message>
            <source>The desk reads order files again.</source>
            <translation>交易台恢复读取文件单。</translation>
        </message>
        <message numerus="yes">
            <source>%n accepted order(s) are not processed yet. They are sent if the resume is finished in time, otherwise declined.</source>
            <translation>
                <numerusform>还有%n笔已接受的委托未处理。如恢复交易及时完成, 它们将被发出, 否则将被拒绝。</numerusform>
            </translation>
        </message>
        <message numerus="yes">
            <source>%n accepted order(s) are not processed yet. Those that need your confirmation are not sent.</source>
            <translation>
                <numerusform>还有%n笔已接受的委托未处理。其中需要您确认的不会发出。</numerusform>
            </translation>
        </message>
        <message numerus="yes">
            <source>%n checked batch(es) wait. If they need your confirmation, they are not sent.</source>
            <translation>
                <numerusform>有%n批已检查的指令等待中。其中需要您确认的不会发出。</numerusform>
            </translation>
        </message>
    </context>
    <context>
        <name>desk::CPlotPanel</name>
        <message>
            <source>Orders a minute</source>
            <translation>每分钟委托数</translation>
        </message>
        <message>
            <source>File or socket to command (ms)</source>
            <translation>文件或端口到指令 (毫秒)</translation>
        </message>
        <message>
            <source>No data yet. The plots begin with the first accounts and orders.</source>
            <translation>还没有数据。有账号和委托后开始画图。</translation>
        </message>
        <message>
            <source>Equity ¥</source>
            <translation>权益(元)</translation>
        </message>
    </context>
    <context>
        <name>desk::CRejectionBar</name>
        <message>
            <source>Seen (F3)</source>
            <translation>已阅 (F3)</translation>
        </message>
        <message numerus="yes">
            <source>and %n more</source>
            <translation>
                <numerusform>还有%n笔</numerusform>
            </translation>
        </message>
        <message>
            <source>REJECTED</source>
            <translation>废单</translation>
        </message>
    </context>
    <context>
        <name>desk::CStateBar</name>
        <message>
            <source>● ACTIVE</source>
            <translation>● 正常</translation>
        </message>
        <message>
            <source>■ HALTING</source>
            <translation>■ 正在停止交易</translation>
        </message>
        <message>
            <source>■ HALTED</source>
            <translation>■ 已停止交易</translation>
        </message>
        <message>
            <source>▮▮ PAUSED</source>
            <translation>▮▮ 已暂停</translation>
        </message>
        <message>
            <source>▲ JOURNAL BROKEN</source>
            <translation>▲ 日志无法写入</translation>
        </message>
        <message>
            <source>… ENDING</source>
            <translation>… 结束中</translation>
        </message>
        <message>
            <source>Resume the intake</source>
            <translation>恢复读取</translation>
        </message>
        <message>
            <source>A confirmation was closed without an answer. The order files wait until you resume.</source>
            <translation>确认窗口未答复即被关闭。文件单等待, 直到恢复读取。</translation>
        </message>
        <message>
            <source>Close</source>
            <translation>关闭</translation>
        </message>
        <message>
            <source>RESUME</source>
            <translation>恢复交易</translation>
        </message>
        <message>
            <source>HALT</source>
            <translation>停止交易</translation>
        </message>
        <message>
            <source>Takes orders again (Ctrl+H)</source>
            <translation>恢复接受委托 (Ctrl+H)</translation>
        </message>
        <message>
            <source>Stops the intake, declines commands and cancels all waiting orders (Ctrl+H)</source>
            <translation>停止读取, 拒绝指令, 撤销全部等待成交的委托 (Ctrl+H)</translation>
        </message>
        <message numerus="yes">
            <source>%n order(s) wait</source>
            <translation>
                <numerusform>%n笔委托等待成交</numerusform>
            </translation>
        </message>
        <message>
            <source>last order %1</source>
            <translation>最近委托 %1</translation>
        </message>
        <message>
            <source>journal ok</source>
            <translation>日志正常</translation>
        </message>
        <message numerus="yes">
            <source>%n order(s) could not be cancelled and still wait: </source>
            <translation>
                <numerusform>%n笔委托未能撤销, 仍在等待成交: </numerusform>
            </translation>
        </message>
        <message>
            <source>DISCARD</source>
            <translation>丢弃委托</translation>
        </message>
        <message>
            <source>Discards the accepted orders that are not processed yet (Ctrl+H)</source>
            <translation>丢弃已接受但未处理的委托 (Ctrl+H)</translation>
        </message>
        <message>
            <source>queue %1</source>
            <translation>队列 %1</translation>
        </message>
        <message>
            <source>journal broken</source>
            <translation>日志无法写入</translation>
        </message>
        <message numerus="yes">
            <source>The desk sends the %n order(s) that it has accepted, and then ends.</source>
            <translation>
                <numerusform>交易台发出已接受的%n笔委托, 然后结束。</numerusform>
            </translation>
        </message>
        <message>
            <source>The journal cannot be written: %1. The tables do not show what happened since then.</source>
            <translation>日志无法写入: %1。表格不显示此后发生的事情。</translation>
        </message>
        <message numerus="yes">
            <source>The tables are %n entries behind.</source>
            <translation>
                <numerusform>表格落后%n条。</numerusform>
            </translation>
        </message>
        <message numerus="yes">
            <source>Accounts, positions and quotes are %n seconds old.</source>
            <translation>
                <numerusform>账号、持仓和行情是%n秒前的数据。</numerusform>
            </translation>
        </message>
        <message numerus="yes">
            <source>%1 of %n strategy(s) running</source>
            <translation>
                <numerusform>%n个策略中%1个运行</numerusform>
            </translation>
        </message>
        <message numerus="yes">
            <source>%n batch(es) wait until you answer the open question.</source>
            <translation>
                <numerusform>有%n批指令等待您处理当前窗口。</numerusform>
            </translation>
        </message>
        <message numerus="yes">
            <source>The desk is halted: it declines the %n order(s) that it has accepted, and then ends.</source>
            <translation>
                <numerusform>交易台已停止交易: 它拒绝已接受的%n笔委托, 然后结束。</numerusform>
            </translation>
        </message>
        <message>
            <source>The desk ends.</source>
            <translation>交易台正在结束。</translation>
        </message>
        <message numerus="yes">
            <source>The desk processes the %n order(s) that it has accepted, and then ends. Those that need your confirmation are not sent.</source>
            <translation>
                <numerusform>交易台处理完已接受的%n笔委托后结束。其中需要您确认的不会发出。</numerusform>
            </translation>
        </message>
    </context>
    <context>
        <name>desk::CStrategyDialog</name>
        <message>
            <source>calculate the volume from an amount</source>
            <translation>由金额计算数量</translation>
        </message>
        <message>
            <source>Add a strategy</source>
            <translation>添加策略</translation>
        </message>
        <message>
            <source>Change strategy %1</source>
            <translation>修改策略%1</translation>
        </message>
        <message>
            <source>&amp;Name</source>
            <translation>名称(&amp;N)</translation>
        </message>
        <message>
            <source>&amp;Source</source>
            <translation>来源(&amp;S)</translation>
        </message>
        <message>
            <source>File or &amp;address</source>
            <translation>文件或地址(&amp;A)</translation>
        </message>
        <message>
            <source>Login &amp;user</source>
            <translation>登录用户(&amp;U)</translation>
        </message>
        <message>
            <source>&amp;Password</source>
            <translation>密码(&amp;P)</translation>
        </message>
        <message>
            <source>&amp;Family</source>
            <translation>品种(&amp;F)</translation>
        </message>
        <message>
            <source>Group or a&amp;ccount</source>
            <translation>账号组或账号(&amp;C)</translation>
        </message>
        <message>
            <source>&amp;Instrument</source>
            <translation>合约(&amp;I)</translation>
        </message>
        <message>
            <source>Price &amp;type</source>
            <translation>报价方式(&amp;T)</translation>
        </message>
        <message>
            <source>&amp;Volume (shares or lots)</source>
            <translation>数量 (股或手)(&amp;V)</translation>
        </message>
        <message>
            <source>not set</source>
            <translation>未设置</translation>
        </message>
        <message>
            <source>OK</source>
            <translation>确定</translation>
        </message>
        <message>
            <source>Cancel</source>
            <translation>取消</translation>
        </message>
        <message>
            <source>%1 (group)</source>
            <translation>%1 (账号组)</translation>
        </message>
        <message>
            <source>%1 (account)</source>
            <translation>%1 (账号)</translation>
        </message>
        <message>
            <source>(choose)</source>
            <translation>(请选择)</translation>
        </message>
        <message>
            <source>path of the file, from the folder of the desk</source>
            <translation>文件路径, 可相对于交易台文件夹</translation>
        </message>
        <message>
            <source>Choose the group or the account that trades.</source>
            <translation>请选择交易用的账号组或账号。</translation>
        </message>
        <message>
            <source>A&amp;mount ¥</source>
            <translation>金额(元)(&amp;M)</translation>
        </message>
    </context>
    <context>
        <name>desk::CTableView</name>
        <message>
            <source>The filter hides all rows. Escape ends it.</source>
            <translation>筛选隐藏了所有行。按 Esc 结束筛选。</translation>
        </message>
        <message>
            <source>Copy</source>
            <translation>复制</translation>
        </message>
        <message>
            <source>Export as CSV...</source>
            <translation>导出为 CSV...</translation>
        </message>
        <message>
            <source>Order of arrival</source>
            <translation>按到达顺序</translation>
        </message>
        <message>
            <source>Export as CSV</source>
            <translation>导出为 CSV</translation>
        </message>
        <message>
            <source>CSV files (*.csv)</source>
            <translation>CSV 文件 (*.csv)</translation>
        </message>
        <message>
            <source>The file cannot be written: %1</source>
            <translation>无法写入文件: %1</translation>
        </message>
        <message>
            <source>Sort by</source>
            <translation>排序</translation>
        </message>
    </context>
    <context>
        <name>main</name>
        <message>
            <source>The desk has ended with a failure</source>
            <translation>交易台因故障结束</translation>
        </message>
    </context>
    <context>
        <name>words</name>
        <message>
            <source>REJECTED</source>
            <translation>废单</translation>
        </message>
        <message>
            <source>ask </source>
            <translation>卖</translation>
        </message>
        <message>
            <source>basket</source>
            <translation>组合</translation>
        </message>
        <message>
            <source>bid </source>
            <translation>买</translation>
        </message>
        <message>
            <source>buy</source>
            <translation>买入</translation>
        </message>
        <message>
            <source>buy fund</source>
            <translation>买入基金</translation>
        </message>
        <message>
            <source>buy on borrowed money</source>
            <translation>融资买入</translation>
        </message>
        <message>
            <source>buy to close</source>
            <translation>买入平仓</translation>
        </message>
        <message>
            <source>buy to close, covered</source>
            <translation>备兑平仓</translation>
        </message>
        <message>
            <source>buy to open</source>
            <translation>买入开仓</translation>
        </message>
        <message>
            <source>buy to return shares</source>
            <translation>买券还券</translation>
        </message>
        <message>
            <source>buy1</source>
            <translation>买1</translation>
        </message>
        <message>
            <source>buy10</source>
            <translation>买10</translation>
        </message>
        <message>
            <source>buy2</source>
            <translation>买2</translation>
        </message>
        <message>
            <source>buy3</source>
            <translation>买3</translation>
        </message>
        <message>
            <source>buy4</source>
            <translation>买4</translation>
        </message>
        <message>
            <source>buy5</source>
            <translation>买5</translation>
        </message>
        <message>
            <source>buy6</source>
            <translation>买6</translation>
        </message>
        <message>
            <source>buy7</source>
            <translation>买7</translation>
        </message>
        <message>
            <source>buy8</source>
            <translation>买8</translation>
        </message>
        <message>
            <source>buy9</source>
            <translation>买9</translation>
        </message>
        <message>
            <source>cancelled</source>
            <translation>已撤单</translation>
        </message>
        <message>
            <source>close long of earlier days</source>
            <translation>平昨多</translation>
        </message>
        <message>
            <source>close long of today</source>
            <translation>平今多</translation>
        </message>
        <message>
            <source>close long, earlier first</source>
            <translation>平多优先平昨</translation>
        </message>
        <message>
            <source>close long, earlier first, then open short</source>
            <translation>平多后开空,优先平昨</translation>
        </message>
        <message>
            <source>close long, today&apos;s first</source>
            <translation>平多优先平今</translation>
        </message>
        <message>
            <source>close long, today&apos;s first, then open short</source>
            <translation>平多后开空,优先平今</translation>
        </message>
        <message>
            <source>close short of earlier days</source>
            <translation>平昨空</translation>
        </message>
        <message>
            <source>close short of today</source>
            <translation>平今空</translation>
        </message>
        <message>
            <source>close short, earlier first</source>
            <translation>平空优先平昨</translation>
        </message>
        <message>
            <source>close short, earlier first, then open long</source>
            <translation>平空后开多,优先平昨</translation>
        </message>
        <message>
            <source>close short, today&apos;s first</source>
            <translation>平空优先平今</translation>
        </message>
        <message>
            <source>close short, today&apos;s first, then open long</source>
            <translation>平空后开多,优先平今</translation>
        </message>
        <message>
            <source>create fund</source>
            <translation>基金合并</translation>
        </message>
        <message>
            <source>credit</source>
            <translation>信用</translation>
        </message>
        <message>
            <source>desk</source>
            <translation>交易台</translation>
        </message>
        <message>
            <source>dissolve fund</source>
            <translation>基金分拆</translation>
        </message>
        <message>
            <source>end a contract of money</source>
            <translation>了结融资合约</translation>
        </message>
        <message>
            <source>end a contract of shares</source>
            <translation>了结融券合约</translation>
        </message>
        <message>
            <source>exercise</source>
            <translation>行权</translation>
        </message>
        <message>
            <source>exercise call</source>
            <translation>认购行权</translation>
        </message>
        <message>
            <source>exercise put</source>
            <translation>认沽行权</translation>
        </message>
        <message>
            <source>file</source>
            <translation>文件</translation>
        </message>
        <message>
            <source>filled</source>
            <translation>已成交</translation>
        </message>
        <message>
            <source>future</source>
            <translation>期货</translation>
        </message>
        <message>
            <source>future_basket</source>
            <translation>期货组合</translation>
        </message>
        <message>
            <source>future_option</source>
            <translation>期货期权</translation>
        </message>
        <message>
            <source>gold</source>
            <translation>黄金</translation>
        </message>
        <message>
            <source>hgt</source>
            <translation>沪港通</translation>
        </message>
        <message>
            <source>incident</source>
            <translation>故障</translation>
        </message>
        <message>
            <source>interface</source>
            <translation>接口</translation>
        </message>
        <message>
            <source>latest</source>
            <translation>最新价</translation>
        </message>
        <message>
            <source>lock shares</source>
            <translation>证券锁定</translation>
        </message>
        <message>
            <source>long</source>
            <translation>多</translation>
        </message>
        <message>
            <source>neeq</source>
            <translation>股转</translation>
        </message>
        <message>
            <source>note</source>
            <translation>提示</translation>
        </message>
        <message>
            <source>open long</source>
            <translation>开多</translation>
        </message>
        <message>
            <source>open short</source>
            <translation>开空</translation>
        </message>
        <message>
            <source>order file</source>
            <translation>文件单</translation>
        </message>
        <message>
            <source>order service</source>
            <translation>下单服务</translation>
        </message>
        <message>
            <source>partly filled</source>
            <translation>部分成交</translation>
        </message>
        <message>
            <source>redeem</source>
            <translation>基金赎回</translation>
        </message>
        <message>
            <source>refusal</source>
            <translation>拒绝</translation>
        </message>
        <message>
            <source>repay money</source>
            <translation>直接还款</translation>
        </message>
        <message>
            <source>repay money of a contract</source>
            <translation>按合约还款</translation>
        </message>
        <message>
            <source>return shares</source>
            <translation>直接还券</translation>
        </message>
        <message>
            <source>runs</source>
            <translation>运行</translation>
        </message>
        <message>
            <source>sell</source>
            <translation>卖出</translation>
        </message>
        <message>
            <source>sell borrowed shares</source>
            <translation>融券卖出</translation>
        </message>
        <message>
            <source>sell fund</source>
            <translation>卖出基金</translation>
        </message>
        <message>
            <source>sell to close</source>
            <translation>卖出平仓</translation>
        </message>
        <message>
            <source>sell to open</source>
            <translation>卖出开仓</translation>
        </message>
        <message>
            <source>sell to open, covered</source>
            <translation>备兑开仓</translation>
        </message>
        <message>
            <source>sell to repay money</source>
            <translation>卖券还款</translation>
        </message>
        <message>
            <source>sell1</source>
            <translation>卖1</translation>
        </message>
        <message>
            <source>sell10</source>
            <translation>卖10</translation>
        </message>
        <message>
            <source>sell2</source>
            <translation>卖2</translation>
        </message>
        <message>
            <source>sell3</source>
            <translation>卖3</translation>
        </message>
        <message>
            <source>sell4</source>
            <translation>卖4</translation>
        </message>
        <message>
            <source>sell5</source>
            <translation>卖5</translation>
        </message>
        <message>
            <source>sell6</source>
            <translation>卖6</translation>
        </message>
        <message>
            <source>sell7</source>
            <translation>卖7</translation>
        </message>
        <message>
            <source>sell8</source>
            <translation>卖8</translation>
        </message>
        <message>
            <source>sell9</source>
            <translation>卖9</translation>
        </message>
        <message>
            <source>sgt</source>
            <translation>深港通</translation>
        </message>
        <message>
            <source>short</source>
            <translation>空</translation>
        </message>
        <message>
            <source>signal</source>
            <translation>端口</translation>
        </message>
        <message>
            <source>specified</source>
            <translation>指定价</translation>
        </message>
        <message>
            <source>stock</source>
            <translation>股票</translation>
        </message>
        <message>
            <source>stock_option</source>
            <translation>股票期权</translation>
        </message>
        <message>
            <source>stopped</source>
            <translation>停止</translation>
        </message>
        <message>
            <source>subscribe</source>
            <translation>基金申购</translation>
        </message>
        <message>
            <source>table</source>
            <translation>表格</translation>
        </message>
        <message>
            <source>transfer buy</source>
            <translation>转让买入</translation>
        </message>
        <message>
            <source>transfer sell</source>
            <translation>转让卖出</translation>
        </message>
        <message>
            <source>unlock shares</source>
            <translation>证券解锁</translation>
        </message>
        <message>
            <source>waits</source>
            <translation>等待成交</translation>
        </message>
        <message>
            <source>warning</source>
            <translation>警告</translation>
        </message>
        <message>
            <source>All</source>
            <translation>全部</translation>
        </message>
    </context>
</TS>
