// The least that a program of this kind can be: a window as large as Nubaria's with a heading in its font, a
// list of the titles in the task file, a tray icon and a settings object; and, step by step, what Nubaria
// cannot be without.
//
// Usage: floorwindow [STEPS]   (1: the form in place of the list; 2: styled; 3: with a shadow; 4: with a
// request; 5: with the file read three times)

#include "ui_mainwindow.h"

#include <QApplication>
#include <QFile>
#include <QFontDatabase>
#include <QGraphicsDropShadowEffect>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QListView>
#include <QMainWindow>
#include <QNetworkAccessManager>
#include <QNetworkRequest>
#include <QPixmap>
#include <QSettings>
#include <QStandardPaths>
#include <QStringListModel>
#include <QSystemTrayIcon>

using namespace Qt::Literals::StringLiterals;

namespace {

QStringList storedTitles()
{
    QFile file(QStandardPaths::writableLocation(QStandardPaths::HomeLocation) + "/rmc.json"_L1);
    QStringList titles;
    if (file.open(QIODevice::ReadOnly)) {
        const QJsonArray tasks = QJsonDocument::fromJson(file.readAll()).array();
        for (const auto &task : tasks) {
            titles.append(task.toObject().value("title"_L1).toString());
        }
    }
    return titles;
}

/// What every program of this kind has: a window with a list, a tray icon and a settings object.
class Floor
{
public:
    Floor()
    {
        QFontDatabase::addApplicationFont(u":/fonts/Gantari-Regular.ttf"_s);
        QPixmap picture(64, 64);
        picture.fill(Qt::black);
        m_trayIcon.setIcon(QIcon(picture));
        m_trayIcon.setVisible(m_settings.value("simpleNotify"_L1, true).toBool());
        m_window.setFixedSize(1250, 700);
    }

    void addList()
    {
        // A window without a letter loads no font, which no program of this kind does.
        auto *heading = new QLabel(u"Tareas pendientes"_s, &m_window);
        heading->setGeometry(255, 20, 400, 40);
        heading->setFont(QFont(u"Gantari"_s, 16));
        auto *list = new QListView(&m_window);
        list->setGeometry(255, 75, 975, 610);
        list->setModel(&m_titles);
    }

    /// Before the form: a sheet that comes later is looked at by every widget that is there.
    void style()
    {
        QFontDatabase::addApplicationFont(u":/fonts/Gantari-SemiBold.ttf"_s);
        m_window.setStyleSheet(u"QWidget { font-family: Gantari ; background-color: white; }"_s);
    }

    void addForm()
    {
        m_form.setupUi(&m_window);
        m_window.setFixedSize(1250, 700);
        m_form.TaskListView->setModel(&m_titles);
        for (QWidget *page :
            {m_form.NewTasksPage, m_form.SettingsPage, m_form.ProfilePage, m_form.PatchPage}) {
            page->hide();
        }
    }

    void addShadow()
    {
        auto *shadow = new QGraphicsDropShadowEffect(&m_window);
        shadow->setBlurRadius(30);
        m_form.MainMenu->setGraphicsEffect(shadow);
    }

    void askForTheVersion() { m_network.get(QNetworkRequest(QUrl(u"https://updates.nubaria.example/"_s))); }

    void show() { m_window.show(); }

private:
    QStringListModel m_titles{storedTitles()};
    QSettings m_settings{u"Quenoli"_s, u"Floor"_s};
    QNetworkAccessManager m_network;
    QMainWindow m_window;
    QSystemTrayIcon m_trayIcon;
    Ui_MainWindow m_form{};
};

} // namespace

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    const int steps = argc == 2 ? QString::fromLatin1(argv[1]).toInt() : 0;
    Floor floor;
    if (steps == 0) {
        floor.addList();
    }
    if (steps > 1) {
        floor.style();
    }
    if (steps > 0) {
        floor.addForm();
    }
    if (steps > 2) {
        floor.addShadow();
    }
    if (steps > 3) {
        floor.askForTheVersion();
    }
    if (steps > 4) { // the file is read once for the ids and once for the number of tasks as well
        storedTitles();
        storedTitles();
    }
    floor.show();
    return QApplication::exec();
}
