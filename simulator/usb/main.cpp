#include "simulator/usb/fault_commands.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QProcess>
#include <QSocketNotifier>
#include <QTextStream>
#include <QTimer>

#include <csignal>

#include <sys/prctl.h>
#include <unistd.h>

namespace {

constexpr int kUsageError = 2;
constexpr int kCrashed = 1;
constexpr int kSignalled = 128;  ///< and the signal's number, as a shell has it
constexpr int kMannersMs = 3000; ///< for the program to end by itself after a signal

struct Options
{
    SimulatedPrinter::Model model = SimulatedPrinter::Model::K2;
    bool unplugged = false;
    QStringList program; ///< and its arguments
};

void complain(const QString& message)
{
    QTextStream(stderr) << "quillbox-virtual-usb: " << message << Qt::endl;
}

/// A program that never outlives this one, however this one ends.
class Child : public QProcess
{
public:
    Child()
    {
        setProcessChannelMode(ForwardedChannels);
        setStandardInputFile(nullDevice()); // the commands are not for it
    }

protected:
    void setupChildProcess() override
    {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (getppid() != m_parent) // ended before that
            _exit(kCrashed);
    }

private:
    const pid_t m_parent = getpid();
};

/// Standard input as it comes in, line by line; its end is no news.
class CommandInput
{
public:
    explicit CommandInput(FaultCommands& commands)
        : m_commands(commands)
    {
        QObject::connect(&m_notifier, &QSocketNotifier::activated, [this] { readOn(); });
    }

private:
    void readOn()
    {
        char bytes[4096];
        const ssize_t count = ::read(STDIN_FILENO, bytes, sizeof bytes);
        if (count <= 0)
            return m_notifier.setEnabled(false);
        m_waiting.append(bytes, static_cast<int>(count));
        for (int end = m_waiting.indexOf('\n'); end >= 0; end = m_waiting.indexOf('\n')) {
            QTextStream(stdout) << m_commands.obey(QString::fromLocal8Bit(m_waiting.left(end))) << Qt::endl;
            m_waiting.remove(0, end + 1);
        }
    }

    FaultCommands& m_commands;
    QSocketNotifier m_notifier{STDIN_FILENO, QSocketNotifier::Read};
    QByteArray m_waiting;
};

int g_signalPipe[2];

void onSignal(int number)
{
    const auto byte = static_cast<char>(number);
    const ssize_t written = ::write(g_signalPipe[1], &byte, 1);
    Q_UNUSED(written)
}

/// A bus that is taken down in order leaves no folder behind.
void watchSignals()
{
    if (pipe(g_signalPipe) != 0)
        qFatal("no pipe for signals");
    for (const int number : {SIGTERM, SIGINT, SIGHUP})
        std::signal(number, onSignal);
}

/// Only a bus can tell, so one is made for the question.
bool isUnderWrapper()
{
    UMockdevTestbed* bus = umockdev_testbed_new();
    const bool isMocked = umockdev_in_mock_environment();
    g_object_unref(bus);
    return isMocked;
}

bool parse(const QCoreApplication& app, Options* options)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral(
            "Starts an unmodified program on a virtual USB bus with a Quillbox printer on it, and ends with "
            "its exit code. Start this program by umockdev-wrapper. Commands, a line each, come from standard "
            "input and are answered on standard output: ") +
        FaultCommands::list());
    parser.setOptionsAfterPositionalArgumentsMode(QCommandLineParser::ParseAsPositionalArguments);
    const QCommandLineOption help = parser.addHelpOption();
    const QCommandLineOption model(QStringLiteral("model"), QStringLiteral("K1 (384 dots) or K2 (576 dots)."),
                                   QStringLiteral("model"), QStringLiteral("K2"));
    const QCommandLineOption unplugged(QStringLiteral("unplugged"), QStringLiteral("Begins without the printer."));
    parser.addOptions({model, unplugged});
    parser.addPositionalArgument(QStringLiteral("program"), QStringLiteral("What to start, with its arguments."),
                                 QStringLiteral("PROGRAM [ARGUMENT…]"));
    const bool parsed = parser.parse(app.arguments());
    if (parsed && parser.isSet(help))
        parser.showHelp();
    const QString name = parser.value(model).toUpper();
    options->model = name == QLatin1String("K1") ? SimulatedPrinter::Model::K1 : SimulatedPrinter::Model::K2;
    options->unplugged = parser.isSet(unplugged);
    options->program = parser.positionalArguments();
    if (!parsed)
        complain(parser.errorText());
    else if (name != QLatin1String("K1") && name != QLatin1String("K2"))
        complain(QStringLiteral("there is no model %1; K1 and K2 are known").arg(parser.value(model)));
    else if (options->program.isEmpty())
        complain(QStringLiteral("name the program to start on the bus (see --help)"));
    else if (!isUnderWrapper())
        complain(QStringLiteral("start it by umockdev-wrapper: umockdev-wrapper quillbox-virtual-usb PROGRAM"));
    else
        return true;
    return false;
}

/// @return  the exit code of all
int run(const QStringList& program)
{
    Child child;
    int signalled = 0;
    QObject::connect(&child, qOverload<int, QProcess::ExitStatus>(&QProcess::finished),
                     [&](int code, QProcess::ExitStatus status) {
                         if (!signalled && status == QProcess::CrashExit)
                             complain(QStringLiteral("%1 crashed").arg(program.first()));
                         const int result = status == QProcess::CrashExit ? kCrashed : code;
                         QCoreApplication::exit(signalled ? kSignalled + signalled : result);
                     });
    QSocketNotifier signalCame(g_signalPipe[0], QSocketNotifier::Read);
    QObject::connect(&signalCame, &QSocketNotifier::activated, [&] {
        char number = 0;
        signalled = ::read(g_signalPipe[0], &number, 1) == 1 ? number : 0;
        child.terminate();
        QTimer::singleShot(kMannersMs, &child, &QProcess::kill);
    });
    child.start(program.first(), program.mid(1));
    if (!child.waitForStarted()) {
        complain(QStringLiteral("cannot start %1: %2").arg(program.first(), child.errorString()));
        return kUsageError;
    }
    return QCoreApplication::exec();
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication app(argc, argv);
    Options options;
    if (!parse(app, &options))
        return kUsageError;
    SimulatedPrinter printer(options.model);
    if (options.unplugged)
        printer.unplug();
    VirtualUsbPrinter bus(printer);
    FaultCommands commands(printer, bus);
    const CommandInput input(commands);
    watchSignals();
    return run(options.program);
}
