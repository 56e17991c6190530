#include "mainwindow/mainwindow.h"
#include "ui_mainwindow.h"
#include "widgets/assistancewatch.h"
#include "widgets/assistedchoice.h"
#include "widgets/datevalue.h"
#include "widgets/parkedpanel.h"

using namespace Qt::Literals::StringLiterals;

void MainWindow::setUpAssistance()
{
    new AssistanceWatch(this, [this] { beginAssistance(); });
}

void MainWindow::beginAssistance()
{
    new AssistedChoice(ui->TaskListView, [this](const QModelIndex &row) { openRow(row); });
    for (QComboBox *box : {ui->OrderNotesBy, ui->CategoryTaskBox, ui->UrgencyTaskBox, ui->CategoryTaskBoxView,
             ui->UrgencyTaskBoxView, ui->DisplayMessage, ui->ChangeTextTheme, ui->ChangeColorTheme}) {
        letItemsBeChosen(box);
    }
    for (QDateEdit *edit : {ui->DateLimitTask, ui->DateLimitTaskView}) {
        offerDateAsNumber(edit);
    }
    new ParkedPanel(ui->TaskDetail);
    new ParkedPanel(ui->FrameUpdater);
    ui->TaskDetail->setAccessibleName(u"Detalles de la tarea"_s);
}
