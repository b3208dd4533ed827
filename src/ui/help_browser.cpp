// The help page is built into the program as a resource, so the help is there
// wherever the program is copied to.

#include "ui/help_browser.h"

#include <QDialogButtonBox>
#include <QPushButton>
#include <QTextBrowser>
#include <QUrl>
#include <QVBoxLayout>

namespace velkaro::ui {
namespace {

const QUrl kHelpPage(QStringLiteral("qrc:/help/velkaro-help.html"));

}  // namespace

HelpBrowser::HelpBrowser(QWidget* parent) : QDialog(parent), browser_(new QTextBrowser(this)) {
  setWindowTitle(QStringLiteral("Informations"));
  resize(720, 640);
  browser_->setOpenExternalLinks(true);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
  QPushButton* contents = buttons->addButton(QStringLiteral("Contents"), QDialogButtonBox::ActionRole);
  QPushButton* back = buttons->addButton(QStringLiteral("Back"), QDialogButtonBox::ActionRole);
  back->setEnabled(false);
  connect(contents, &QPushButton::clicked, this, &HelpBrowser::showContents);
  connect(back, &QPushButton::clicked, browser_, &QTextBrowser::backward);
  connect(browser_, &QTextBrowser::backwardAvailable, back, &QPushButton::setEnabled);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

  auto* layout = new QVBoxLayout(this);
  layout->addWidget(browser_);
  layout->addWidget(buttons);
  browser_->setSource(kHelpPage);
}

void HelpBrowser::showContents() {
  QUrl contents = kHelpPage;
  contents.setFragment(QStringLiteral("contents"));
  browser_->setSource(contents);
}

}  // namespace velkaro::ui
