#include "device/diagnostics/network_window.h"

#include "cloud/get_sw_version_api.h"
#include "cloud/login_api.h"
#include "ui_network_window.h"

#include <QEvent>
#include <QFontDatabase>
#include <QTime>

namespace {

constexpr int kShownCharacters = 64 * 1024; ///< of each text: a reply may be a thousand times longer

} // namespace

TestNetworkWindow::TestNetworkWindow(QWidget* parent)
    : QWidget(parent)
    , m_ui(new Ui::TestNetworkWindow)
{
    m_ui->setupUi(this);
    for (QPlainTextEdit* text : {m_ui->plainText, m_ui->cipherText}) {
        text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
        text->setWordWrapMode(QTextOption::WrapAnywhere); // base64 has no words
    }
    connect(m_ui->buttonLogin, &QPushButton::clicked, this, &TestNetworkWindow::onLoginClicked);
    connect(m_ui->userName, &QLineEdit::returnPressed, m_ui->buttonLogin, &QPushButton::click);
    connect(m_ui->password, &QLineEdit::returnPressed, m_ui->buttonLogin, &QPushButton::click);
    connect(m_ui->buttonCheckVersion, &QPushButton::clicked, this, &TestNetworkWindow::onCheckVersionClicked);
    connect(m_ui->log, &QListWidget::currentRowChanged, this, &TestNetworkWindow::showEntry);
}

TestNetworkWindow::~TestNetworkWindow() = default;

void TestNetworkWindow::onLoginClicked()
{
    auto* call = new LoginApi(this);
    watch(call);
    call->login(m_ui->userName->text(), m_ui->password->text(), [](const UserModel&) {}); // the log has the account
}

void TestNetworkWindow::onCheckVersionClicked()
{
    auto* call = new GetSWVersionApi(this);
    watch(call);
    call->checkVersion({});
}

void TestNetworkWindow::watch(BaseApi* call)
{
    connect(call, &BaseApi::signalSent, this,
            [this](const QString& apiName, const QString& plain, const QString& cipher) {
                addEntry(QStringLiteral("-> ") + apiName, plain, cipher);
            });
    connect(call, &BaseApi::signalReceived, this,
            [this](int httpStatus, const QString& plain, const QString& cipher) {
                addEntry(QStringLiteral("<- %1").arg(httpStatus), plain, cipher);
                setBusy(false);
            });
    connect(call, &BaseApi::signalReceived, call, &QObject::deleteLater);
    setBusy(true);
}

void TestNetworkWindow::setBusy(bool busy)
{
    m_ui->buttonLogin->setEnabled(!busy);
    m_ui->buttonCheckVersion->setEnabled(!busy);
}

void TestNetworkWindow::addEntry(const QString& title, const QString& plain, const QString& cipher)
{
    m_entries.append({plain.left(kShownCharacters), cipher.left(kShownCharacters)});
    m_ui->log->addItem(QTime::currentTime().toString(QStringLiteral("hh:mm:ss ")) + title);
    m_ui->log->setCurrentRow(m_ui->log->count() - 1);
}

void TestNetworkWindow::showEntry(int row)
{
    const Entry entry = m_entries.value(row);
    m_ui->plainText->setPlainText(entry.plain);
    m_ui->cipherText->setPlainText(entry.cipher);
}

void TestNetworkWindow::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LanguageChange)
        m_ui->retranslateUi(this);
}
