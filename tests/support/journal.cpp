#include "support/journal.h"

#include "mainwindow/mainwindow.h"
#include "support/traymessages.h"

#include <QAbstractAnimation>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QDesktopServices>
#include <QEvent>
#include <QFile>
#include <QFileInfo>
#include <QFontDatabase>
#include <QGraphicsEffect>
#include <QItemSelectionModel>
#include <QLabel>
#include <QLineEdit>
#include <QLocalServer>
#include <QMenu>
#include <QMessageBox>
#include <QMetaMethod>
#include <QNetworkAccessManager>
#include <QPropertyAnimation>
#include <QPushButton>
#include <QRegularExpression>
#include <QSettings>
#include <QStringListModel>
#include <QTextEdit>
#include <QTimer>

#include <chrono>
#include <cstring>
#include <dlfcn.h>

using namespace Qt::Literals::StringLiterals;

namespace {

struct Journal
{
    QStringList entries;
    qsizetype messages = 0; // of the tray, those noted already
};

Journal &kept()
{
    static Journal journal;
    return journal;
}

// Every test program keeps the tray's messages by itself; here they get their place among the calls.
void noteTrayMessages()
{
    const QList<TrayMessage> messages = traymessages::all();
    for (; kept().messages < messages.size(); ++kept().messages) {
        kept().entries.append("tray.showMessage "_L1 + messages.at(kept().messages).title);
    }
}

void note(const QString &entry)
{
    noteTrayMessages();
    kept().entries.append(entry.trimmed());
}

QString told(const QString &text)
{
    return text;
}

QString told(const QStringList &texts)
{
    return texts.join(u',');
}

QString told(const QVariant &value)
{
    return value.toString();
}

QString told(bool on)
{
    return on ? u"true"_s : u"false"_s;
}

QString told(int number)
{
    return QString::number(number);
}

QString told(QAction *action)
{
    return action->text();
}

template <typename Other> QString told(const Other &)
{
    return {};
}

QString named(const QObject &object)
{
    return object.objectName().isEmpty() ? QString::fromLatin1(object.metaObject()->className())
                                         : object.objectName();
}

bool isOfABox(const QObject &object)
{
    const auto *widget = qobject_cast<const QWidget *>(&object);
    return widget && qobject_cast<const QMessageBox *>(widget->window());
}

/// Whether that address is in one of Qt's libraries, or in a double of a function of Qt's, where the last
/// call of Qt's own returns to. Some builds of the libraries call themselves past the program, others come by
/// here. The program's own calls return to the program, as it is compiled without sibling calls, or to a
/// library of ours, which may hold a copy of what Qt's headers define.
bool isInQt(const void *address)
{
    static const QRegularExpression ofQt(u"^_ZNK?[0-9]+Q[A-Z]"_s);
    Dl_info place;
    return dladdr(address, &place) != 0
        && (std::strstr(place.dli_fname, "libQt6")
            || (!std::strstr(place.dli_fname, "libnubaria")
                && ofQt.match(QString::fromLatin1(place.dli_sname)).hasMatch()));
}

// What Qt asks of itself is its affair, and so is what a message box does to its own parts.
template <typename... Values>
void noteCall(const void *caller, const QObject &object, const char *function, const Values &...values)
{
    if (!isInQt(caller) && !isOfABox(object)) {
        note((named(object) + u'.' + QLatin1StringView(function) + ... + (u' ' + told(values))));
    }
}

// Parts of Qt's widgets have no names, or names of Qt's.
bool isOfTheForm(const QObject &object)
{
    return !object.objectName().isEmpty() && !object.objectName().startsWith("qt_"_L1);
}

/// Notes what appears and vanishes, whoever had it do so.
class Watcher final : public QObject
{
public:
    bool eventFilter(QObject *object, QEvent *event) override
    {
        const auto *box = qobject_cast<const QMessageBox *>(object);
        if (event->type() == QEvent::ShowToParent && isOfTheForm(*object)) {
            noteCall(&kept(), *object, "show");
        } else if (event->type() == QEvent::HideToParent && isOfTheForm(*object)) {
            noteCall(&kept(), *object, "hide");
        } else if (event->type() == QEvent::Show && box) {
            note("box.show "_L1 + box->windowTitle());
        }
        return false;
    }
};

QtMessageHandler earlierHandler = nullptr;

void noteLogLine(QtMsgType type, const QMessageLogContext &context, const QString &line)
{
    if (type == QtCriticalMsg || type == QtInfoMsg) {
        note("log "_L1 + line);
    }
    earlierHandler(type, context, line);
}

bool isOurs(const QObject &receiver)
{
    return &receiver == QCoreApplication::instance() || qobject_cast<const MainWindow *>(&receiver);
}

/// What follows the program's own definition of a function: Qt's.
template <typename Function> Function next(const char *symbol)
{
    void *found = dlsym(RTLD_NEXT, symbol);
    if (!found) {
        qFatal("Qt has no %s", symbol);
    }
    return reinterpret_cast<Function>(found);
}

/// The signal's name, from what the compiler makes of a pointer to it.
QByteArray signalName(const QMetaObject *type, void **signal)
{
    for (; type; type = type->superClass()) {
        int index = -1;
        void *arguments[] = {&index, static_cast<void *>(signal)};
        type->static_metacall(QMetaObject::IndexOfMethod, 0, arguments);
        if (index >= 0) {
            return type->method(type->methodOffset() + index).name();
        }
    }
    return {};
}

} // namespace

#define NUBARIA_CALLER __builtin_return_address(0)

// NOLINTBEGIN(bugprone-macro-parentheses): types stand in none
#define NUBARIA_NOTED(Type, function, symbol)                                                                \
    void Type::function()                                                                                    \
    {                                                                                                        \
        noteCall(NUBARIA_CALLER, *this, #function);                                                          \
        next<void (*)(Type *)>(symbol)(this);                                                                \
    }
#define NUBARIA_NOTED_WITH(Type, function, symbol, Value)                                                    \
    void Type::function(Value value)                                                                         \
    {                                                                                                        \
        noteCall(NUBARIA_CALLER, *this, #function, value);                                                   \
        next<void (*)(Type *, Value)>(symbol)(this, value);                                                  \
    }
// NOLINTEND(bugprone-macro-parentheses)

NUBARIA_NOTED(QLineEdit, clear, "_ZN9QLineEdit5clearEv")
NUBARIA_NOTED(QTextEdit, clear, "_ZN9QTextEdit5clearEv")
NUBARIA_NOTED(QWidget, showNormal, "_ZN7QWidget10showNormalEv")
NUBARIA_NOTED(QWidget, activateWindow, "_ZN7QWidget14activateWindowEv")
NUBARIA_NOTED(QItemSelectionModel, clearSelection, "_ZN19QItemSelectionModel14clearSelectionEv")
NUBARIA_NOTED(QWidget, raise, "_ZN7QWidget5raiseEv")
NUBARIA_NOTED_WITH(QLabel, setText, "_ZN6QLabel7setTextERK7QString", const QString &)
NUBARIA_NOTED_WITH(QLineEdit, setText, "_ZN9QLineEdit7setTextERK7QString", const QString &)
NUBARIA_NOTED_WITH(QLineEdit, setClearButtonEnabled, "_ZN9QLineEdit21setClearButtonEnabledEb", bool)
NUBARIA_NOTED_WITH(QTextEdit, setPlainText, "_ZN9QTextEdit12setPlainTextERK7QString", const QString &)
NUBARIA_NOTED_WITH(QComboBox, setCurrentIndex, "_ZN9QComboBox15setCurrentIndexEi", int)
NUBARIA_NOTED_WITH(QComboBox, setCurrentText, "_ZN9QComboBox14setCurrentTextERK7QString", const QString &)
NUBARIA_NOTED_WITH(QDateTimeEdit, setDate, "_ZN13QDateTimeEdit7setDateE5QDate", QDate)
NUBARIA_NOTED_WITH(QAbstractButton, setChecked, "_ZN15QAbstractButton10setCheckedEb", bool)
NUBARIA_NOTED_WITH(QAbstractButton, setCheckable, "_ZN15QAbstractButton12setCheckableEb", bool)
NUBARIA_NOTED_WITH(QWidget, setEnabled, "_ZN7QWidget10setEnabledEb", bool)
NUBARIA_NOTED_WITH(QWidget, addAction, "_ZN7QWidget9addActionEP7QAction", QAction *)
NUBARIA_NOTED_WITH(QWidget, setGeometry, "_ZN7QWidget11setGeometryERK5QRect", const QRect &)
NUBARIA_NOTED_WITH(QWidget, setStyleSheet, "_ZN7QWidget13setStyleSheetERK7QString", const QString &)
NUBARIA_NOTED_WITH(
    QWidget, setGraphicsEffect, "_ZN7QWidget17setGraphicsEffectEP15QGraphicsEffect", QGraphicsEffect *)
NUBARIA_NOTED_WITH(QWidget, setContextMenuPolicy,
    "_ZN7QWidget20setContextMenuPolicyEN2Qt17ContextMenuPolicyE", Qt::ContextMenuPolicy)
NUBARIA_NOTED_WITH(QSystemTrayIcon, setIcon, "_ZN15QSystemTrayIcon7setIconERK5QIcon", const QIcon &)
NUBARIA_NOTED_WITH(QSystemTrayIcon, setVisible, "_ZN15QSystemTrayIcon10setVisibleEb", bool)
NUBARIA_NOTED_WITH(QSystemTrayIcon, setContextMenu, "_ZN15QSystemTrayIcon14setContextMenuEP5QMenu", QMenu *)
NUBARIA_NOTED_WITH(QStringListModel, setStringList, "_ZN16QStringListModel13setStringListERK5QListI7QStringE",
    const QStringList &)

void QTimer::start(int milliseconds)
{
    if (qobject_cast<QWidget *>(parent())) { // Qt has timers of its own
        noteCall(NUBARIA_CALLER, *this, "start", milliseconds);
    }
    next<void (*)(QTimer *, int)>("_ZN6QTimer5startEi")(this, milliseconds);
}

#if QT_VERSION >= QT_VERSION_CHECK(6, 8, 0) // before, it is written in the header and calls the other
void QTimer::start(std::chrono::milliseconds interval)
{
    if (qobject_cast<QWidget *>(parent())) {
        noteCall(NUBARIA_CALLER, *this, "start", static_cast<int>(interval.count()));
    }
    next<void (*)(QTimer *, std::chrono::milliseconds)>(
        "_ZN6QTimer5startENSt6chrono8durationIlSt5ratioILl1ELl1000EEEE")(this, interval);
}
#endif

void QWidget::setFixedSize(int width, int height)
{
    noteCall(NUBARIA_CALLER, *this, "setFixedSize", width, height);
    next<void (*)(QWidget *, int, int)>("_ZN7QWidget12setFixedSizeEii")(this, width, height);
}

void QComboBox::insertItem(int index, const QIcon &icon, const QString &text, const QVariant &userData)
{
    noteCall(NUBARIA_CALLER, *this, "insertItem", index, text);
    next<void (*)(QComboBox *, int, const QIcon &, const QString &, const QVariant &)>(
        "_ZN9QComboBox10insertItemEiRK5QIconRK7QStringRK8QVariant")(this, index, icon, text, userData);
}

void QAbstractAnimation::start(QAbstractAnimation::DeletionPolicy policy)
{
    const auto *animation = qobject_cast<QPropertyAnimation *>(this);
    if (animation && isOfTheForm(*animation->targetObject())) {
        noteCall(NUBARIA_CALLER, *animation->targetObject(), "slide");
    }
    next<void (*)(QAbstractAnimation *, DeletionPolicy)>(
        "_ZN18QAbstractAnimation5startENS_14DeletionPolicyE")(this, policy);
}

bool QWidget::close()
{
    noteCall(NUBARIA_CALLER, *this, "close");
    return next<bool (*)(QWidget *)>("_ZN7QWidget5closeEv")(this);
}

void QApplication::alert(QWidget *widget, int duration)
{
    noteCall(NUBARIA_CALLER, *widget, "alert", duration);
    next<void (*)(QWidget *, int)>("_ZN12QApplication5alertEP7QWidgeti")(widget, duration);
}

bool QDesktopServices::openUrl(const QUrl &url)
{
    note("desktop.openUrl "_L1 + url.path());
    return true;
}

void QSettings::setValue(QAnyStringView key, const QVariant &value)
{
    note(applicationName() + ".setValue "_L1 + key.toString() + u' ' + told(value));
    next<void (*)(QSettings *, QAnyStringView, const QVariant &)>(
        "_ZN9QSettings8setValueE14QAnyStringViewRK8QVariant")(this, key, value);
}

QVariant QSettings::value(QAnyStringView key, const QVariant &value) const
{
    note(applicationName() + ".value "_L1 + key.toString());
    return next<QVariant (*)(const QSettings *, QAnyStringView, const QVariant &)>(
        "_ZNK9QSettings5valueE14QAnyStringViewRK8QVariant")(this, key, value);
}

QNetworkReply *QNetworkAccessManager::get(const QNetworkRequest &request)
{
    note(u"network.get"_s);
    return next<QNetworkReply *(*)(QNetworkAccessManager *, const QNetworkRequest &)>(
        "_ZN21QNetworkAccessManager3getERK15QNetworkRequest")(this, request);
}

int QFontDatabase::addApplicationFont(const QString &file)
{
    note("fonts.addApplicationFont "_L1 + QFileInfo(file).baseName());
    return next<int (*)(const QString &)>("_ZN13QFontDatabase18addApplicationFontERK7QString")(file);
}

void QLocale::setDefault(const QLocale &locale)
{
    note("locale.setDefault "_L1 + locale.name());
    next<void (*)(const QLocale &)>("_ZN7QLocale10setDefaultERKS_")(locale);
}

bool QLocalServer::removeServer(const QString &name)
{
    note("server.removeServer "_L1 + name);
    return next<bool (*)(const QString &)>("_ZN12QLocalServer12removeServerERK7QString")(name);
}

bool QLocalServer::listen(const QString &name)
{
    noteCall(NUBARIA_CALLER, *this, "listen", name);
    return next<bool (*)(QLocalServer *, const QString &)>("_ZN12QLocalServer6listenERK7QString")(this, name);
}

bool QFile::open(OpenMode mode)
{
    if (fileName().endsWith("/rmc.json"_L1)) {
        note("rmc.json.open "_L1
            + (mode == ReadOnly         ? "ReadOnly"_L1
                    : mode == WriteOnly ? "WriteOnly"_L1
                                        : "ReadWrite"_L1));
    }
    return next<bool (*)(QFile *, OpenMode)>("_ZN5QFile4openE6QFlagsIN13QIODeviceBase12OpenModeFlagEE")(
        this, mode);
}

QMetaObject::Connection QObject::connectImpl(const QObject *sender, void **signal, const QObject *receiver,
    void **slot, QtPrivate::QSlotObjectBase *object, Qt::ConnectionType type, const int *types,
    const QMetaObject *senderType)
{
    if (isOurs(*receiver) && sender != QCoreApplication::instance()) {
        noteCall(NUBARIA_CALLER, *sender, "connect", QString::fromLatin1(signalName(senderType, signal)));
    }
    return next<QMetaObject::Connection (*)(const QObject *, void **, const QObject *, void **,
        QtPrivate::QSlotObjectBase *, Qt::ConnectionType, const int *, const QMetaObject *)>(
        "_ZN7QObject11connectImplEPKS_PPvS1_S3_"
        "PN9QtPrivate15QSlotObjectBaseEN2Qt14ConnectionTypeEPKiPK11QMetaObject")(
        sender, signal, receiver, slot, object, type, types, senderType);
}

void journal::begin()
{
    static Watcher watcher;
    QCoreApplication::instance()->installEventFilter(&watcher); // a second time, it only moves to the front
    if (!earlierHandler) {
        earlierHandler = qInstallMessageHandler(noteLogLine);
    }
    kept() = {.entries = {}, .messages = traymessages::all().size()};
}

QStringList journal::entries()
{
    noteTrayMessages();
    return kept().entries;
}
