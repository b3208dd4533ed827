#pragma once
// "Informations": Velkaro's help page, shown in a browser window of its own
// that opens at the page's contents.

#include <QDialog>

class QTextBrowser;

namespace velkaro::ui {

class HelpBrowser : public QDialog {
  Q_OBJECT

 public:
  explicit HelpBrowser(QWidget* parent = nullptr);

  // Back to the contents at the top of the page.
  void showContents();
  QTextBrowser* browser() const { return browser_; }

 private:
  QTextBrowser* browser_;
};

}  // namespace velkaro::ui
