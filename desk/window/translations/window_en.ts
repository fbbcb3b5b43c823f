<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en">
    <context>
        <name>columns</name>
        <message>
            <source>State</source>
            <translation>State</translation>
        </message>
        <message>
            <source>Ch.</source>
            <translation>Ch.</translation>
        </message>
        <message>
            <source>Name</source>
            <translation>Name</translation>
        </message>
        <message>
            <source>Source</source>
            <translation>Source</translation>
        </message>
        <message>
            <source>Family</source>
            <translation>Family</translation>
        </message>
        <message>
            <source>Accounts</source>
            <translation>Accounts</translation>
        </message>
        <message>
            <source>File or address</source>
            <translation>File or address</translation>
        </message>
        <message>
            <source>Time</source>
            <translation>Time</translation>
        </message>
        <message>
            <source>Order</source>
            <translation>Order</translation>
        </message>
        <message>
            <source>Task</source>
            <translation>Task</translation>
        </message>
        <message>
            <source>Account</source>
            <translation>Account</translation>
        </message>
        <message>
            <source>Code</source>
            <translation>Code</translation>
        </message>
        <message>
            <source>Side</source>
            <translation>Side</translation>
        </message>
        <message>
            <source>Volume</source>
            <translation>Volume</translation>
        </message>
        <message>
            <source>Filled</source>
            <translation>Filled</translation>
        </message>
        <message>
            <source>Price</source>
            <translation>Price</translation>
        </message>
        <message>
            <source>Filled at</source>
            <translation>Filled at</translation>
        </message>
        <message>
            <source>Reason</source>
            <translation>Reason</translation>
        </message>
        <message>
            <source>Orders</source>
            <translation>Orders</translation>
        </message>
        <message>
            <source>Waiting</source>
            <translation>Waiting</translation>
        </message>
        <message>
            <source>Cancelled</source>
            <translation>Cancelled</translation>
        </message>
        <message>
            <source>Rejected</source>
            <translation>Rejected</translation>
        </message>
        <message>
            <source>Remark</source>
            <translation>Remark</translation>
        </message>
        <message>
            <source>Fill</source>
            <translation>Fill</translation>
        </message>
        <message>
            <source>Held</source>
            <translation>Held</translation>
        </message>
        <message>
            <source>Can sell</source>
            <translation>Can sell</translation>
        </message>
        <message>
            <source>Cost</source>
            <translation>Cost</translation>
        </message>
        <message>
            <source>Last</source>
            <translation>Last</translation>
        </message>
        <message>
            <source>P&amp;L %</source>
            <translation>P&amp;L %</translation>
        </message>
        <message>
            <source>Bid</source>
            <translation>Bid</translation>
        </message>
        <message>
            <source>Ask</source>
            <translation>Ask</translation>
        </message>
        <message>
            <source>Level</source>
            <translation>Level</translation>
        </message>
        <message>
            <source>Kind</source>
            <translation>Kind</translation>
        </message>
        <message>
            <source>Text</source>
            <translation>Text</translation>
        </message>
        <message>
            <source>No.</source>
            <translation>No.</translation>
        </message>
        <message>
            <source>Record</source>
            <translation>Record</translation>
        </message>
        <message>
            <source>Severity</source>
            <translation>Severity</translation>
        </message>
        <message>
            <source>Changed</source>
            <translation>Changed</translation>
        </message>
        <message>
            <source>All filled</source>
            <translation>All filled</translation>
        </message>
        <message>
            <source>In shares; derivatives in contracts</source>
            <translation>In shares; derivatives in contracts</translation>
        </message>
        <message>
            <source>In ¥; index futures in points</source>
            <translation>In ¥; index futures in points</translation>
        </message>
        <message>
            <source>Amount ¥</source>
            <translation>Amount ¥</translation>
        </message>
        <message>
            <source>Available ¥</source>
            <translation>Available ¥</translation>
        </message>
        <message>
            <source>Frozen ¥</source>
            <translation>Frozen ¥</translation>
        </message>
        <message>
            <source>Equity ¥</source>
            <translation>Equity ¥</translation>
        </message>
        <message>
            <source>Open P&amp;L ¥</source>
            <translation>Open P&amp;L ¥</translation>
        </message>
        <message>
            <source>This run ¥</source>
            <translation>This run ¥</translation>
        </message>
        <message>
            <source>Value ¥</source>
            <translation>Value ¥</translation>
        </message>
        <message>
            <source>P&amp;L ¥</source>
            <translation>P&amp;L ¥</translation>
        </message>
        <message>
            <source>Chg %</source>
            <translation>Chg %</translation>
        </message>
    </context>
    <context>
        <name>desk::CFilterHeader</name>
        <message>
            <source>filter</source>
            <translation>filter</translation>
        </message>
        <message>
            <source>Shows only rows that contain this text. Numbers: &gt;100, &lt;100, =100; a whole number finds only itself</source>
            <translation>Shows only rows that contain this text. Numbers: &gt;100, &lt;100, =100; a whole number finds only itself</translation>
        </message>
    </context>
    <context>
        <name>desk::CMainWindow</name>
        <message>
            <source>Strategies</source>
            <translation>Strategies</translation>
        </message>
        <message>
            <source>No strategy. Add one with Insert, or write strategies.toml.</source>
            <translation>No strategy. Add one with Insert, or write strategies.toml.</translation>
        </message>
        <message>
            <source>Accounts</source>
            <translation>Accounts</translation>
        </message>
        <message>
            <source>No account. Write one to desk.toml.</source>
            <translation>No account. Write one to desk.toml.</translation>
        </message>
        <message>
            <source>Book</source>
            <translation>Book</translation>
        </message>
        <message>
            <source>No instrument. Choose one with Enter in Quotes, Orders or Positions.</source>
            <translation>No instrument. Choose one with Enter in Quotes, Orders or Positions.</translation>
        </message>
        <message>
            <source>Quotes</source>
            <translation>Quotes</translation>
        </message>
        <message>
            <source>No instrument. Write one to instruments.csv.</source>
            <translation>No instrument. Write one to instruments.csv.</translation>
        </message>
        <message>
            <source>Orders</source>
            <translation>Orders</translation>
        </message>
        <message>
            <source>No order yet. Start a strategy (F2, Enter) and hand it an order file.</source>
            <translation>No order yet. Start a strategy (F2, Enter) and hand it an order file.</translation>
        </message>
        <message>
            <source>Tasks</source>
            <translation>Tasks</translation>
        </message>
        <message>
            <source>No task yet. Each command of an order becomes a task.</source>
            <translation>No task yet. Each command of an order becomes a task.</translation>
        </message>
        <message>
            <source>Fills</source>
            <translation>Fills</translation>
        </message>
        <message>
            <source>No fill yet. An order is filled when the book has its price.</source>
            <translation>No fill yet. An order is filled when the book has its price.</translation>
        </message>
        <message>
            <source>Positions</source>
            <translation>Positions</translation>
        </message>
        <message>
            <source>No position. A filled buy makes one.</source>
            <translation>No position. A filled buy makes one.</translation>
        </message>
        <message>
            <source>Messages</source>
            <translation>Messages</translation>
        </message>
        <message>
            <source>No message yet.</source>
            <translation>No message yet.</translation>
        </message>
        <message>
            <source>Journal</source>
            <translation>Journal</translation>
        </message>
        <message>
            <source>No record yet in this run. orderdesk journal shows earlier ones.</source>
            <translation>No record yet in this run. orderdesk journal shows earlier ones.</translation>
        </message>
        <message>
            <source>Book: %1 %2</source>
            <translation>Book: %1 %2</translation>
        </message>
        <message numerus="yes">
            <source> (%n row(s) hidden)</source>
            <translation>
                <numerusform> (%n row hidden)</numerusform>
                <numerusform> (%n rows hidden)</numerusform>
            </translation>
        </message>
        <message numerus="yes">
            <source> (%n REJECTED)</source>
            <translation>
                <numerusform> (%n REJECTED)</numerusform>
                <numerusform> (%n REJECTED)</numerusform>
            </translation>
        </message>
        <message>
            <source>No</source>
            <translation>No</translation>
        </message>
        <message>
            <source>Close the desk?</source>
            <translation>Close the desk?</translation>
        </message>
        <message>
            <source>Close the desk</source>
            <translation>Close the desk</translation>
        </message>
        <message>
            <source>&amp;Desk</source>
            <translation>&amp;Desk</translation>
        </message>
        <message>
            <source>&amp;Halt or resume...</source>
            <translation>&amp;Halt or resume...</translation>
        </message>
        <message>
            <source>&amp;Close</source>
            <translation>&amp;Close</translation>
        </message>
        <message>
            <source>&amp;Strategies</source>
            <translation>&amp;Strategies</translation>
        </message>
        <message>
            <source>&amp;Add...</source>
            <translation>&amp;Add...</translation>
        </message>
        <message>
            <source>&amp;Change...</source>
            <translation>&amp;Change...</translation>
        </message>
        <message>
            <source>&amp;Remove...</source>
            <translation>&amp;Remove...</translation>
        </message>
        <message>
            <source>&amp;Orders</source>
            <translation>&amp;Orders</translation>
        </message>
        <message>
            <source>&amp;Cancel the selected orders...</source>
            <translation>&amp;Cancel the selected orders...</translation>
        </message>
        <message>
            <source>Cancel the selected &amp;tasks...</source>
            <translation>Cancel the selected &amp;tasks...</translation>
        </message>
        <message>
            <source>Cancel all of the selected &amp;accounts...</source>
            <translation>Cancel all of the selected &amp;accounts...</translation>
        </message>
        <message>
            <source>&amp;View</source>
            <translation>&amp;View</translation>
        </message>
        <message>
            <source>&amp;Positions</source>
            <translation>&amp;Positions</translation>
        </message>
        <message>
            <source>&amp;Messages</source>
            <translation>&amp;Messages</translation>
        </message>
        <message>
            <source>&amp;Filter</source>
            <translation>&amp;Filter</translation>
        </message>
        <message>
            <source>&amp;Dark colours</source>
            <translation>&amp;Dark colours</translation>
        </message>
        <message>
            <source>&amp;Red is up</source>
            <translation>&amp;Red is up</translation>
        </message>
        <message>
            <source>De&amp;fault layout</source>
            <translation>De&amp;fault layout</translation>
        </message>
        <message>
            <source>Strategy %1: %2</source>
            <translation>Strategy %1: %2</translation>
        </message>
        <message>
            <source>Stop strategy %1 before you change it.</source>
            <translation>Stop strategy %1 before you change it.</translation>
        </message>
        <message numerus="yes">
            <source>Remove %n strategy(s)? Channels: %1</source>
            <translation>
                <numerusform>Remove %n strategy? Channel: %1</numerusform>
                <numerusform>Remove %n strategies? Channels: %1</numerusform>
            </translation>
        </message>
        <message>
            <source>Remove strategies</source>
            <translation>Remove strategies</translation>
        </message>
        <message>
            <source>Remove</source>
            <translation>Remove</translation>
        </message>
        <message>
            <source>None of the selected rows has a waiting order.</source>
            <translation>None of the selected rows has a waiting order.</translation>
        </message>
        <message>
            <source>Cancel orders</source>
            <translation>Cancel orders</translation>
        </message>
        <message>
            <source>Cancel the orders</source>
            <translation>Cancel the orders</translation>
        </message>
        <message>
            <source>Cancel tasks</source>
            <translation>Cancel tasks</translation>
        </message>
        <message>
            <source>Cancel the tasks</source>
            <translation>Cancel the tasks</translation>
        </message>
        <message>
            <source>Resume?</source>
            <translation>Resume?</translation>
        </message>
        <message>
            <source>Resume</source>
            <translation>Resume</translation>
        </message>
        <message>
            <source>Halt</source>
            <translation>Halt</translation>
        </message>
        <message>
            <source>HALT</source>
            <translation>HALT</translation>
        </message>
        <message>
            <source>An order file waits at %1. The start deletes it unread.</source>
            <translation>An order file waits at %1. The start deletes it unread.</translation>
        </message>
        <message>
            <source>Start strategy %1?</source>
            <translation>Start strategy %1?</translation>
        </message>
        <message>
            <source>Delete and start</source>
            <translation>Delete and start</translation>
        </message>
        <message>
            <source>it cannot be done now; the strategy may have been changed meanwhile</source>
            <translation>it cannot be done now; the strategy may have been changed meanwhile</translation>
        </message>
        <message>
            <source>%1: %2 %3, %4 left at %5</source>
            <translation>%1: %2 %3, %4 left at %5</translation>
        </message>
        <message>
            <source>the market price</source>
            <translation>the market price</translation>
        </message>
        <message>
            <source>&amp;Start (Enter)</source>
            <translation>&amp;Start (Enter)</translation>
        </message>
        <message>
            <source>St&amp;op (Space)</source>
            <translation>St&amp;op (Space)</translation>
        </message>
        <message>
            <source>The table %1 is there already. The start reads it and sends its orders.</source>
            <translation>The table %1 is there already. The start reads it and sends its orders.</translation>
        </message>
        <message>
            <source>Read and start</source>
            <translation>Read and start</translation>
        </message>
        <message>
            <source>it is not there any more</source>
            <translation>it is not there any more</translation>
        </message>
        <message numerus="yes">
            <source>%n of them run(s) and is/are stopped first.</source>
            <translation>
                <numerusform>%n of them runs and is stopped first.</numerusform>
                <numerusform>%n of them run and are stopped first.</numerusform>
            </translation>
        </message>
        <message numerus="yes">
            <source>Cancel %n waiting order(s) of %1?</source>
            <translation>
                <numerusform>Cancel %n waiting order of %1?</numerusform>
                <numerusform>Cancel %n waiting orders of %1?</numerusform>
            </translation>
        </message>
        <message numerus="yes">
            <source>%n task(s):</source>
            <translation>
                <numerusform>%n task:</numerusform>
                <numerusform>%n tasks:</numerusform>
            </translation>
        </message>
        <message numerus="yes">
            <source>%n line(s) were left out here, because too many came at once. The journal has the records.</source>
            <translation>
                <numerusform>%n line was left out here, because too many came at once. The journal has the records.</numerusform>
                <numerusform>%n lines were left out here, because too many came at once. The journal has the records.</numerusform>
            </translation>
        </message>
        <message>
            <source>%1 is not in instruments.csv, so it has no quotes.</source>
            <translation>%1 is not in instruments.csv, so it has no quotes.</translation>
        </message>
        <message numerus="yes">
            <source> (%n WARNING(S))</source>
            <translation>
                <numerusform> (%n WARNING)</numerusform>
                <numerusform> (%n WARNINGS)</numerusform>
            </translation>
        </message>
        <message>
            <source>Plots</source>
            <translation>Plots</translation>
        </message>
        <message>
            <source>NOT READ: %1 (%2)</source>
            <translation>NOT READ: %1 (%2)</translation>
        </message>
        <message numerus="yes">
            <source>%n strategy(s) run.</source>
            <translation>
                <numerusform>%n strategy runs.</numerusform>
                <numerusform>%n strategies run.</numerusform>
            </translation>
        </message>
        <message numerus="yes">
            <source>%n accepted order(s) are not processed yet. The desk still sends them before it ends. Until then the window stays and can discard them.</source>
            <translation>
                <numerusform>%n accepted order is not processed yet. The desk still sends it before it ends. Until then the window stays and can discard it.</numerusform>
                <numerusform>%n accepted orders are not processed yet. The desk still sends them before it ends. Until then the window stays and can discard them.</numerusform>
            </translation>
        </message>
        <message numerus="yes">
            <source>%n order(s) wait and stay in the books.</source>
            <translation>
                <numerusform>%n order waits and stays in the books.</numerusform>
                <numerusform>%n orders wait and stay in the books.</numerusform>
            </translation>
        </message>
        <message>
            <source>The batch that waits for your confirmation is declined.</source>
            <translation>The batch that waits for your confirmation is declined.</translation>
        </message>
        <message>
            <source>The halt is not finished.</source>
            <translation>The halt is not finished.</translation>
        </message>
        <message>
            <source>Cancel all waiting orders of %1? The tables show %2 of them.</source>
            <translation>Cancel all waiting orders of %1? The tables show %2 of them.</translation>
        </message>
        <message numerus="yes">
            <source>%n order file(s) wait at their paths and are read now: %1. Before you agree, delete the files that must not be sent.</source>
            <translation>
                <numerusform>%n order file waits at its path and is read now: %1. Before you agree, delete it if it must not be sent.</numerusform>
                <numerusform>%n order files wait at their paths and are read now: %1. Before you agree, delete the files that must not be sent.</numerusform>
            </translation>
        </message>
        <message>
            <source>Resume the intake?</source>
            <translation>Resume the intake?</translation>
        </message>
        <message numerus="yes">
            <source>%n accepted order(s) are not processed yet. They are written to the journal and not sent.</source>
            <translation>
                <numerusform>%n accepted order is not processed yet. It is written to the journal and not sent.</numerusform>
                <numerusform>%n accepted orders are not processed yet. They are written to the journal and not sent.</numerusform>
            </translation>
        </message>
        <message>
            <source>Discard the orders?</source>
            <translation>Discard the orders?</translation>
        </message>
        <message>
            <source>Discard</source>
            <translation>Discard</translation>
        </message>
        <message>
            <source>&amp;Resume the intake...</source>
            <translation>&amp;Resume the intake...</translation>
        </message>
        <message>
            <source>Close the &amp;notice</source>
            <translation>Close the &amp;notice</translation>
        </message>
        <message>
            <source>Sor&amp;t, copy, export...</source>
            <translation>Sor&amp;t, copy, export...</translation>
        </message>
        <message numerus="yes">
            <source>Cancel those of the %n selected order(s) that still wait? The tables show %1 of them, but they may be behind.</source>
            <translation>
                <numerusform>Cancel the selected order if it still waits? The tables show %1 of them, but they may be behind.</numerusform>
                <numerusform>Cancel those of the %n selected orders that still wait? The tables show %1 of them, but they may be behind.</numerusform>
            </translation>
        </message>
        <message numerus="yes">
            <source>Cancel the orders of the %n selected task(s) that still wait? The tables show %1 of them, but they may be behind.</source>
            <translation>
                <numerusform>Cancel the orders of the selected task that still wait? The tables show %1 of them, but they may be behind.</numerusform>
                <numerusform>Cancel the orders of the %n selected tasks that still wait? The tables show %1 of them, but they may be behind.</numerusform>
            </translation>
        </message>
        <message numerus="yes">
            <source>%n waiting order(s)</source>
            <translation>
                <numerusform>%n waiting order</numerusform>
                <numerusform>%n waiting orders</numerusform>
            </translation>
        </message>
        <message numerus="yes">
            <source>%n account(s)</source>
            <translation>
                <numerusform>%n account</numerusform>
                <numerusform>%n accounts</numerusform>
            </translation>
        </message>
        <message>
            <source>Halt the desk? It reads no more order files, declines all commands, and cancels %1 of %2. Ctrl+H resumes; cancelled orders stay cancelled.</source>
            <translation>Halt the desk? It reads no more order files, declines all commands, and cancels %1 of %2. Ctrl+H resumes; cancelled orders stay cancelled.</translation>
        </message>
        <message numerus="yes">
            <source>Files and sockets send orders again. %n strategy(s) run.</source>
            <translation>
                <numerusform>Files and sockets send orders again. %n strategy runs.</numerusform>
                <numerusform>Files and sockets send orders again. %n strategies run.</numerusform>
            </translation>
        </message>
        <message numerus="yes">
            <source>%n accepted order(s) are not processed yet. The desk is halted: they are declined.</source>
            <translation>
                <numerusform>%n accepted order is not processed yet. The desk is halted: it is declined.</numerusform>
                <numerusform>%n accepted orders are not processed yet. The desk is halted: they are declined.</numerusform>
            </translation>
        </message>
        <message>
            <source>The desk reads order files again.</source>
            <translation>The desk reads order files again.</translation>
        </message>
        <message numerus="yes">
            <source>%n accepted order(s) are not processed yet. They are sent if the resume is finished in time, otherwise declined.</source>
            <translation>
                <numerusform>%n accepted order is not processed yet. It is sent if the resume is finished in time, otherwise declined.</numerusform>
                <numerusform>%n accepted orders are not processed yet. They are sent if the resume is finished in time, otherwise declined.</numerusform>
            </translation>
        </message>
        <message numerus="yes">
            <source>%n accepted order(s) are not processed yet. Those that need your confirmation are not sent.</source>
            <translation>
                <numerusform>%n accepted order is not processed yet. If it needs your confirmation, it is not sent.</numerusform>
                <numerusform>%n accepted orders are not processed yet. Those that need your confirmation are not sent.</numerusform>
            </translation>
        </message>
        <message numerus="yes">
            <source>%n checked batch(es) wait. If they need your confirmation, they are not sent.</source>
            <translation>
                <numerusform>%n checked batch waits. If it needs your confirmation, it is not sent.</numerusform>
                <numerusform>%n checked batches wait. Those that need your confirmation are not sent.</numerusform>
            </translation>
        </message>
    </context>
    <context>
        <name>desk::CPlotPanel</name>
        <message>
            <source>Orders a minute</source>
            <translation>Orders a minute</translation>
        </message>
        <message>
            <source>File or socket to command (ms)</source>
            <translation>File or socket to command (ms)</translation>
        </message>
        <message>
            <source>No data yet. The plots begin with the first accounts and orders.</source>
            <translation>No data yet. The plots begin with the first accounts and orders.</translation>
        </message>
        <message>
            <source>Equity ¥</source>
            <translation>Equity ¥</translation>
        </message>
    </context>
    <context>
        <name>desk::CRejectionBar</name>
        <message>
            <source>Seen (F3)</source>
            <translation>Seen (F3)</translation>
        </message>
        <message numerus="yes">
            <source>and %n more</source>
            <translation>
                <numerusform>and %n more</numerusform>
                <numerusform>and %n more</numerusform>
            </translation>
        </message>
        <message>
            <source>REJECTED</source>
            <translation>REJECTED</translation>
        </message>
    </context>
    <context>
        <name>desk::CStateBar</name>
        <message>
            <source>● ACTIVE</source>
            <translation>● ACTIVE</translation>
        </message>
        <message>
            <source>■ HALTING</source>
            <translation>■ HALTING</translation>
        </message>
        <message>
            <source>■ HALTED</source>
            <translation>■ HALTED</translation>
        </message>
        <message>
            <source>▮▮ PAUSED</source>
            <translation>▮▮ PAUSED</translation>
        </message>
        <message>
            <source>▲ JOURNAL BROKEN</source>
            <translation>▲ JOURNAL BROKEN</translation>
        </message>
        <message>
            <source>… ENDING</source>
            <translation>… ENDING</translation>
        </message>
        <message>
            <source>Resume the intake</source>
            <translation>Resume the intake</translation>
        </message>
        <message>
            <source>A confirmation was closed without an answer. The order files wait until you resume.</source>
            <translation>A confirmation was closed without an answer. The order files wait until you resume.</translation>
        </message>
        <message>
            <source>Close</source>
            <translation>Close</translation>
        </message>
        <message>
            <source>RESUME</source>
            <translation>RESUME</translation>
        </message>
        <message>
            <source>HALT</source>
            <translation>HALT</translation>
        </message>
        <message>
            <source>Takes orders again (Ctrl+H)</source>
            <translation>Takes orders again (Ctrl+H)</translation>
        </message>
        <message>
            <source>Stops the intake, declines commands and cancels all waiting orders (Ctrl+H)</source>
            <translation>Stops the intake, declines commands and cancels all waiting orders (Ctrl+H)</translation>
        </message>
        <message numerus="yes">
            <source>%n order(s) wait</source>
            <translation>
                <numerusform>%n order waits</numerusform>
                <numerusform>%n orders wait</numerusform>
            </translation>
        </message>
        <message>
            <source>last order %1</source>
            <translation>last order %1</translation>
        </message>
        <message>
            <source>journal ok</source>
            <translation>journal ok</translation>
        </message>
        <message numerus="yes">
            <source>%n order(s) could not be cancelled and still wait: </source>
            <translation>
                <numerusform>%n order could not be cancelled and still waits: </numerusform>
                <numerusform>%n orders could not be cancelled and still wait: </numerusform>
            </translation>
        </message>
        <message>
            <source>DISCARD</source>
            <translation>DISCARD</translation>
        </message>
        <message>
            <source>Discards the accepted orders that are not processed yet (Ctrl+H)</source>
            <translation>Discards the accepted orders that are not processed yet (Ctrl+H)</translation>
        </message>
        <message>
            <source>queue %1</source>
            <translation>queue %1</translation>
        </message>
        <message>
            <source>journal broken</source>
            <translation>journal broken</translation>
        </message>
        <message numerus="yes">
            <source>The desk sends the %n order(s) that it has accepted, and then ends.</source>
            <translation>
                <numerusform>The desk sends the order that it has accepted, and then ends.</numerusform>
                <numerusform>The desk sends the %n orders that it has accepted, and then ends.</numerusform>
            </translation>
        </message>
        <message>
            <source>The journal cannot be written: %1. The tables do not show what happened since then.</source>
            <translation>The journal cannot be written: %1. The tables do not show what happened since then.</translation>
        </message>
        <message numerus="yes">
            <source>The tables are %n entries behind.</source>
            <translation>
                <numerusform>The tables are %n entry behind.</numerusform>
                <numerusform>The tables are %n entries behind.</numerusform>
            </translation>
        </message>
        <message numerus="yes">
            <source>Accounts, positions and quotes are %n seconds old.</source>
            <translation>
                <numerusform>Accounts, positions and quotes are %n second old.</numerusform>
                <numerusform>Accounts, positions and quotes are %n seconds old.</numerusform>
            </translation>
        </message>
        <message numerus="yes">
            <source>%1 of %n strategy(s) running</source>
            <translation>
                <numerusform>%1 of %n strategy running</numerusform>
                <numerusform>%1 of %n strategies running</numerusform>
            </translation>
        </message>
        <message numerus="yes">
            <source>%n batch(es) wait until you answer the open question.</source>
            <translation>
                <numerusform>%n batch waits until you answer the open question.</numerusform>
                <numerusform>%n batches wait until you answer the open question.</numerusform>
            </translation>
        </message>
        <message numerus="yes">
            <source>The desk is halted: it declines the %n order(s) that it has accepted, and then ends.</source>
            <translation>
                <numerusform>The desk is halted: it declines the order that it has accepted, and then ends.</numerusform>
                <numerusform>The desk is halted: it declines the %n orders that it has accepted, and then ends.</numerusform>
            </translation>
        </message>
        <message>
            <source>The desk ends.</source>
            <translation>The desk ends.</translation>
        </message>
        <message numerus="yes">
            <source>The desk processes the %n order(s) that it has accepted, and then ends. Those that need your confirmation are not sent.</source>
            <translation>
                <numerusform>The desk processes the order that it has accepted, and then ends. If it needs your confirmation, it is not sent.</numerusform>
                <numerusform>The desk processes the %n orders that it has accepted, and then ends. Those that need your confirmation are not sent.</numerusform>
            </translation>
        </message>
    </context>
    <context>
        <name>desk::CStrategyDialog</name>
        <message>
            <source>calculate the volume from an amount</source>
            <translation>calculate the volume from an amount</translation>
        </message>
        <message>
            <source>Add a strategy</source>
            <translation>Add a strategy</translation>
        </message>
        <message>
            <source>Change strategy %1</source>
            <translation>Change strategy %1</translation>
        </message>
        <message>
            <source>&amp;Name</source>
            <translation>&amp;Name</translation>
        </message>
        <message>
            <source>&amp;Source</source>
            <translation>&amp;Source</translation>
        </message>
        <message>
            <source>File or &amp;address</source>
            <translation>File or &amp;address</translation>
        </message>
        <message>
            <source>Login &amp;user</source>
            <translation>Login &amp;user</translation>
        </message>
        <message>
            <source>&amp;Password</source>
            <translation>&amp;Password</translation>
        </message>
        <message>
            <source>&amp;Family</source>
            <translation>&amp;Family</translation>
        </message>
        <message>
            <source>Group or a&amp;ccount</source>
            <translation>Group or a&amp;ccount</translation>
        </message>
        <message>
            <source>&amp;Instrument</source>
            <translation>&amp;Instrument</translation>
        </message>
        <message>
            <source>Price &amp;type</source>
            <translation>Price &amp;type</translation>
        </message>
        <message>
            <source>&amp;Volume (shares or lots)</source>
            <translation>&amp;Volume (shares or lots)</translation>
        </message>
        <message>
            <source>not set</source>
            <translation>not set</translation>
        </message>
        <message>
            <source>OK</source>
            <translation>OK</translation>
        </message>
        <message>
            <source>Cancel</source>
            <translation>Cancel</translation>
        </message>
        <message>
            <source>%1 (group)</source>
            <translation>%1 (group)</translation>
        </message>
        <message>
            <source>%1 (account)</source>
            <translation>%1 (account)</translation>
        </message>
        <message>
            <source>(choose)</source>
            <translation>(choose)</translation>
        </message>
        <message>
            <source>path of the file, from the folder of the desk</source>
            <translation>path of the file, from the folder of the desk</translation>
        </message>
        <message>
            <source>Choose the group or the account that trades.</source>
            <translation>Choose the group or the account that trades.</translation>
        </message>
        <message>
            <source>A&amp;mount ¥</source>
            <translation>A&amp;mount ¥</translation>
        </message>
    </context>
    <context>
        <name>desk::CTableView</name>
        <message>
            <source>The filter hides all rows. Escape ends it.</source>
            <translation>The filter hides all rows. Escape ends it.</translation>
        </message>
        <message>
            <source>Copy</source>
            <translation>Copy</translation>
        </message>
        <message>
            <source>Export as CSV...</source>
            <translation>Export as CSV...</translation>
        </message>
        <message>
            <source>Order of arrival</source>
            <translation>Order of arrival</translation>
        </message>
        <message>
            <source>Export as CSV</source>
            <translation>Export as CSV</translation>
        </message>
        <message>
            <source>CSV files (*.csv)</source>
            <translation>CSV files (*.csv)</translation>
        </message>
        <message>
            <source>The file cannot be written: %1</source>
            <translation>The file cannot be written: %1</translation>
        </message>
        <message>
            <source>Sort by</source>
            <translation>Sort by</translation>
        </message>
    </context>
    <context>
        <name>main</name>
        <message>
            <source>The desk has ended with a failure</source>
            <translation>The desk has ended with a failure</translation>
        </message>
    </context>
    <context>
        <name>words</name>
        <message>
            <source>REJECTED</source>
            <translation>REJECTED</translation>
        </message>
        <message>
            <source>ask </source>
            <translation>ask </translation>
        </message>
        <message>
            <source>basket</source>
            <translation>basket</translation>
        </message>
        <message>
            <source>bid </source>
            <translation>bid </translation>
        </message>
        <message>
            <source>buy</source>
            <translation>buy</translation>
        </message>
        <message>
            <source>buy fund</source>
            <translation>buy fund</translation>
        </message>
        <message>
            <source>buy on borrowed money</source>
            <translation>buy on borrowed money</translation>
        </message>
        <message>
            <source>buy to close</source>
            <translation>buy to close</translation>
        </message>
        <message>
            <source>buy to close, covered</source>
            <translation>buy to close, covered</translation>
        </message>
        <message>
            <source>buy to open</source>
            <translation>buy to open</translation>
        </message>
        <message>
            <source>buy to return shares</source>
            <translation>buy to return shares</translation>
        </message>
        <message>
            <source>buy1</source>
            <translation>buy1</translation>
        </message>
        <message>
            <source>buy10</source>
            <translation>buy10</translation>
        </message>
        <message>
            <source>buy2</source>
            <translation>buy2</translation>
        </message>
        <message>
            <source>buy3</source>
            <translation>buy3</translation>
        </message>
        <message>
            <source>buy4</source>
            <translation>buy4</translation>
        </message>
        <message>
            <source>buy5</source>
            <translation>buy5</translation>
        </message>
        <message>
            <source>buy6</source>
            <translation>buy6</translation>
        </message>
        <message>
            <source>buy7</source>
            <translation>buy7</translation>
        </message>
        <message>
            <source>buy8</source>
            <translation>buy8</translation>
        </message>
        <message>
            <source>buy9</source>
            <translation>buy9</translation>
        </message>
        <message>
            <source>cancelled</source>
            <translation>cancelled</translation>
        </message>
        <message>
            <source>close long of earlier days</source>
            <translation>close long of earlier days</translation>
        </message>
        <message>
            <source>close long of today</source>
            <translation>close long of today</translation>
        </message>
        <message>
            <source>close long, earlier first</source>
            <translation>close long, earlier first</translation>
        </message>
        <message>
            <source>close long, earlier first, then open short</source>
            <translation>close long, earlier first, then open short</translation>
        </message>
        <message>
            <source>close long, today&apos;s first</source>
            <translation>close long, today&apos;s first</translation>
        </message>
        <message>
            <source>close long, today&apos;s first, then open short</source>
            <translation>close long, today&apos;s first, then open short</translation>
        </message>
        <message>
            <source>close short of earlier days</source>
            <translation>close short of earlier days</translation>
        </message>
        <message>
            <source>close short of today</source>
            <translation>close short of today</translation>
        </message>
        <message>
            <source>close short, earlier first</source>
            <translation>close short, earlier first</translation>
        </message>
        <message>
            <source>close short, earlier first, then open long</source>
            <translation>close short, earlier first, then open long</translation>
        </message>
        <message>
            <source>close short, today&apos;s first</source>
            <translation>close short, today&apos;s first</translation>
        </message>
        <message>
            <source>close short, today&apos;s first, then open long</source>
            <translation>close short, today&apos;s first, then open long</translation>
        </message>
        <message>
            <source>create fund</source>
            <translation>create fund</translation>
        </message>
        <message>
            <source>credit</source>
            <translation>credit</translation>
        </message>
        <message>
            <source>desk</source>
            <translation>desk</translation>
        </message>
        <message>
            <source>dissolve fund</source>
            <translation>dissolve fund</translation>
        </message>
        <message>
            <source>end a contract of money</source>
            <translation>end a contract of money</translation>
        </message>
        <message>
            <source>end a contract of shares</source>
            <translation>end a contract of shares</translation>
        </message>
        <message>
            <source>exercise</source>
            <translation>exercise</translation>
        </message>
        <message>
            <source>exercise call</source>
            <translation>exercise call</translation>
        </message>
        <message>
            <source>exercise put</source>
            <translation>exercise put</translation>
        </message>
        <message>
            <source>file</source>
            <translation>file</translation>
        </message>
        <message>
            <source>filled</source>
            <translation>filled</translation>
        </message>
        <message>
            <source>future</source>
            <translation>future</translation>
        </message>
        <message>
            <source>future_basket</source>
            <translation>future_basket</translation>
        </message>
        <message>
            <source>future_option</source>
            <translation>future_option</translation>
        </message>
        <message>
            <source>gold</source>
            <translation>gold</translation>
        </message>
        <message>
            <source>hgt</source>
            <translation>hgt</translation>
        </message>
        <message>
            <source>incident</source>
            <translation>incident</translation>
        </message>
        <message>
            <source>interface</source>
            <translation>interface</translation>
        </message>
        <message>
            <source>latest</source>
            <translation>latest</translation>
        </message>
        <message>
            <source>lock shares</source>
            <translation>lock shares</translation>
        </message>
        <message>
            <source>long</source>
            <translation>long</translation>
        </message>
        <message>
            <source>neeq</source>
            <translation>neeq</translation>
        </message>
        <message>
            <source>note</source>
            <translation>note</translation>
        </message>
        <message>
            <source>open long</source>
            <translation>open long</translation>
        </message>
        <message>
            <source>open short</source>
            <translation>open short</translation>
        </message>
        <message>
            <source>order file</source>
            <translation>order file</translation>
        </message>
        <message>
            <source>order service</source>
            <translation>order service</translation>
        </message>
        <message>
            <source>partly filled</source>
            <translation>partly filled</translation>
        </message>
        <message>
            <source>redeem</source>
            <translation>redeem</translation>
        </message>
        <message>
            <source>refusal</source>
            <translation>refusal</translation>
        </message>
        <message>
            <source>repay money</source>
            <translation>repay money</translation>
        </message>
        <message>
            <source>repay money of a contract</source>
            <translation>repay money of a contract</translation>
        </message>
        <message>
            <source>return shares</source>
            <translation>return shares</translation>
        </message>
        <message>
            <source>runs</source>
            <translation>runs</translation>
        </message>
        <message>
            <source>sell</source>
            <translation>sell</translation>
        </message>
        <message>
            <source>sell borrowed shares</source>
            <translation>sell borrowed shares</translation>
        </message>
        <message>
            <source>sell fund</source>
            <translation>sell fund</translation>
        </message>
        <message>
            <source>sell to close</source>
            <translation>sell to close</translation>
        </message>
        <message>
            <source>sell to open</source>
            <translation>sell to open</translation>
        </message>
        <message>
            <source>sell to open, covered</source>
            <translation>sell to open, covered</translation>
        </message>
        <message>
            <source>sell to repay money</source>
            <translation>sell to repay money</translation>
        </message>
        <message>
            <source>sell1</source>
            <translation>sell1</translation>
        </message>
        <message>
            <source>sell10</source>
            <translation>sell10</translation>
        </message>
        <message>
            <source>sell2</source>
            <translation>sell2</translation>
        </message>
        <message>
            <source>sell3</source>
            <translation>sell3</translation>
        </message>
        <message>
            <source>sell4</source>
            <translation>sell4</translation>
        </message>
        <message>
            <source>sell5</source>
            <translation>sell5</translation>
        </message>
        <message>
            <source>sell6</source>
            <translation>sell6</translation>
        </message>
        <message>
            <source>sell7</source>
            <translation>sell7</translation>
        </message>
        <message>
            <source>sell8</source>
            <translation>sell8</translation>
        </message>
        <message>
            <source>sell9</source>
            <translation>sell9</translation>
        </message>
        <message>
            <source>sgt</source>
            <translation>sgt</translation>
        </message>
        <message>
            <source>short</source>
            <translation>short</translation>
        </message>
        <message>
            <source>signal</source>
            <translation>signal</translation>
        </message>
        <message>
            <source>specified</source>
            <translation>specified</translation>
        </message>
        <message>
            <source>stock</source>
            <translation>stock</translation>
        </message>
        <message>
            <source>stock_option</source>
            <translation>stock_option</translation>
        </message>
        <message>
            <source>stopped</source>
            <translation>stopped</translation>
        </message>
        <message>
            <source>subscribe</source>
            <translation>subscribe</translation>
        </message>
        <message>
            <source>table</source>
            <translation>table</translation>
        </message>
        <message>
            <source>transfer buy</source>
            <translation>transfer buy</translation>
        </message>
        <message>
            <source>transfer sell</source>
            <translation>transfer sell</translation>
        </message>
        <message>
            <source>unlock shares</source>
            <translation>unlock shares</translation>
        </message>
        <message>
            <source>waits</source>
            <translation>waits</translation>
        </message>
        <message>
            <source>warning</source>
            <translation>warning</translation>
        </message>
        <message>
            <source>All</source>
            <translation>All</translation>
        </message>
    </context>
</TS>
