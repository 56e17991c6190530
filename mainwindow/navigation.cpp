#include "mainwindow/mainwindow.h"
#include "ui_mainwindow.h"

#include <QPropertyAnimation>

namespace {

constexpr int panelSlideTime = 250; // milliseconds
constexpr int bannerSlideTime = 150;

constexpr QRect openPanel(0, 0, 1010, 700);
constexpr QRect closedPanel(1010, 0, 1010, 700);
constexpr QRect openBanner(10, 595, 220, 90);
constexpr QRect closedBanner(-230, 595, 220, 90);

struct Slide
{
    QRect from;
    QRect to;
    int duration = 0;
    QEasingCurve::Type easing = QEasingCurve::Linear;
};

// Nothing here stops an earlier slide of the same panel: Qt does, when the new one starts.
QPropertyAnimation *startSlide(QWidget *panel, const Slide &slide, QObject *parent = nullptr)
{
    auto *animation = new QPropertyAnimation(panel, "geometry", parent);
    animation->setDuration(slide.duration);
    animation->setEasingCurve(slide.easing);
    animation->setStartValue(slide.from);
    animation->setEndValue(slide.to);
    animation->start(QAbstractAnimation::DeleteWhenStopped);
    return animation;
}

} // namespace

void MainWindow::onTaskViewButtonClicked()
{
    showPage(ui->TaskViewButton, ui->TasksPage);
}

void MainWindow::onNewTaskViewButtonClicked()
{
    showPage(ui->NewTaskViewButton, ui->NewTasksPage);
}

void MainWindow::onSettingsViewButtonClicked()
{
    showPage(ui->SettingsViewButton, ui->SettingsPage);
}

void MainWindow::onProfileViewButtonClicked()
{
    showPage(ui->ProfileViewButton, ui->ProfilePage);
}

void MainWindow::onPatchNoticesViewButtonClicked()
{
    showPage(ui->PatchNoticesViewButton, ui->PatchPage);
}

QList<QPushButton *> MainWindow::pageButtons() const
{
    return {ui->TaskViewButton, ui->NewTaskViewButton, ui->SettingsViewButton, ui->ProfileViewButton,
        ui->PatchNoticesViewButton};
}

void MainWindow::resetNavigation()
{
    closeTaskDetail();
    for (QPushButton *button : pageButtons()) {
        button->setChecked(false);
    }
}

void MainWindow::showPage(QPushButton *button, QWidget *page)
{
    resetNavigation();
    button->setChecked(true);
    setVisiblePage(page);
}

void MainWindow::setVisiblePage(QWidget *page)
{
    page->setVisible(true);
    for (QWidget *other :
        {ui->TasksPage, ui->NewTasksPage, ui->ProfilePage, ui->SettingsPage, ui->PatchPage}) {
        other->setVisible(other == page);
    }
}

void MainWindow::openTaskDetail()
{
    detailAnimation = startSlide(ui->TaskDetail,
        {.from = ui->TaskDetail->geometry(),
            .to = openPanel,
            .duration = panelSlideTime,
            .easing = QEasingCurve::OutCubic});
    enterTaskDetail();
}

void MainWindow::closeTaskDetail()
{
    // The list has no selection before its model is set, and the tray menu works while a box of the start is
    // up.
    if (QItemSelectionModel *selection = ui->TaskListView->selectionModel()) {
        selection->clearSelection();
    }
    detailAnimation = startSlide(ui->TaskDetail,
        {.from = ui->TaskDetail->geometry(),
            .to = closedPanel,
            .duration = panelSlideTime,
            .easing = QEasingCurve::InCubic});
    leaveTaskDetail();
}

void MainWindow::parkUpdateBanner()
{
    ui->FrameUpdater->setGeometry(closedBanner);
}

void MainWindow::showUpdateMessage()
{
    startSlide(ui->FrameUpdater,
        {.from = closedBanner,
            .to = openBanner,
            .duration = bannerSlideTime,
            .easing = QEasingCurve::OutCubic},
        this);
}

void MainWindow::closeUpdateMessage()
{
    startSlide(ui->FrameUpdater,
        {.from = openBanner,
            .to = closedBanner,
            .duration = bannerSlideTime,
            .easing = QEasingCurve::InCubic},
        this);
}
