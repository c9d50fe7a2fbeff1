// Makes the manual's pictures.
//
//     tessaran_pictures SCRIPT DRAWING FOLDER
//
// Of dialogs: runs a script whose comments "; picture NAME" save what is in front as NAME.png.
//
//     tessaran_pictures --window DRAWING PICTURE
//
// Of the window as it opens on the drawing.
//
// Lines are those of any script: commands, answers to prompts before the command that asks them
// (behind "; answer "), directives. Nothing is written but the pictures.

#include "base/file.h"
#include "base/text.h"
#include "console/dialog_lines.h"
#include "console/drawing_files.h"
#include "desktop/desktop_session.h"
#include "desktop/dialog_bench.h"
#include "desktop/dialog_window.h"

#include <fmt/format.h>

#include <QDir>
#include <QEventLoop>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <cstdio>

namespace {

using namespace tessaran;
using desktop::DialogWindow;

constexpr int kPause = 30; // milliseconds between steps

bool startsWith(const std::string& line, const std::string& word, std::string& rest) {
    if (!line.starts_with(word))
        return false;
    rest = base::trimmed(line.substr(word.size()));
    return true;
}

class Photographer : public QObject {
  public:
    Photographer(test::DialogBench& bench, QString folder)
        : bench_(bench), folder_(std::move(folder)) {}

    // Whether every line was used.
    bool run(const std::vector<std::string>& lines) {
        lines_.assign(lines.begin(), lines.end());
        arm();
        while (!lines_.empty() && !failed_) {
            const std::string line = next();
            std::string rest;
            if (startsWith(line, "; answer ", rest))
                bench_.prompts().add(rest);
            else if (!line.empty() && !line.starts_with(';'))
                bench_.command(line);
        }
        return !failed_;
    }

  private:
    std::string next() {
        std::string line(base::trimmed(lines_.front()));
        lines_.pop_front();
        return line;
    }

    void arm() {
        QTimer::singleShot(kPause, this, [this] { turn(); });
    }

    void turn() {
        arm();
        QWidget* inFront = QApplication::activeModalWidget();
        if (inFront == nullptr || settling_)
            return;
        if (lines_.empty() || failed_)
            return fail("nothing left for " + inFront->windowTitle().toStdString(), inFront);
        const std::string line = next();
        std::string rest;
        if (startsWith(line, "; picture ", rest))
            take(*inFront, QString::fromStdString(rest));
        else if (auto* box = qobject_cast<QMessageBox*>(inFront))
            answer(*box, line);
        else if (auto* files = qobject_cast<QFileDialog*>(inFront))
            choose(*files, line);
        else if (auto* dialog = qobject_cast<DialogWindow*>(inFront))
            direct(*dialog, line);
        else
            fail("unexpected window at " + line, inFront);
    }

    void take(QWidget& window, const QString& name) {
        settle();
        const QImage picture = window.grab().toImage().convertToFormat(QImage::Format_RGB888);
        const QString path = folder_ + "/" + name + ".png";
        if (!picture.save(path, "PNG", 0))
            fail("cannot write " + path.toStdString(), &window);
    }

    // Layouts follow the texts in a few turns of the event loop.
    void settle() {
        settling_ = true;
        QEventLoop loop;
        QTimer::singleShot(5 * kPause, &loop, &QEventLoop::quit);
        loop.exec();
        settling_ = false;
    }

    void answer(QMessageBox& box, const std::string& line) {
        std::string wanted;
        if (!startsWith(line, ":answer ", wanted))
            return fail("\"" + box.text().toStdString() + "\" before " + line, &box);
        for (QAbstractButton* button : box.buttons())
            if (base::lowered(button->text().remove('&').toStdString()) == wanted)
                return button->click();
        fail("no button " + wanted, &box);
    }

    void choose(QFileDialog& files, const std::string& line) {
        std::string path;
        auto* name = files.findChild<QLineEdit*>("fileNameEdit");
        if (!startsWith(line, ":file", path) || name == nullptr)
            return fail("a file dialog before " + line, &files);
        name->setText(QDir::current().absoluteFilePath(QString::fromStdString(path)));
        QMetaObject::invokeMethod(&files, "accept");
    }

    void direct(DialogWindow& window, const std::string& line) {
        if (line.empty() || line.starts_with(';'))
            return;
        const char* button = line == ":ok" ? "dialog.ok" : line == ":cancel" ? "dialog.cancel" : "";
        if (auto* end = window.findChild<QPushButton*>(button))
            return end->click();
        const auto used = console::carryOut(console::parseLine(line, 1),
                                            const_cast<host::DialogSession&>(window.session()));
        if (!used)
            fail(line + ": " + used.error().text, &window);
    }

    void fail(const std::string& why, QWidget* inFront) {
        fmt::print(stderr, "{}\n", why);
        failed_ = true;
        inFront->close();
    }

    test::DialogBench& bench_;
    QString folder_;
    std::deque<std::string> lines_;
    bool failed_ = false;
    bool settling_ = false;
};

// The window as it opens on the drawing.
int takeWindow(const std::string& drawing, const QString& path) {
    desktop::DesktopSession session({});
    session.window().resize(1280, 860);
    bool saved = false;
    QTimer::singleShot(100 * kPause, &session.window(), [&] {
        saved = session.window()
                    .grab()
                    .toImage()
                    .convertToFormat(QImage::Format_RGB888)
                    .save(path, "PNG", 0);
        session.window().close();
    });
    session.run(drawing);
    return saved ? 0 : 1;
}

} // namespace

int main(int argc, char** argv) {
    test::application();
    QApplication::setCursorFlashTime(0); // the same picture every time
    if (argc == 4 && std::string(argv[1]) == "--window")
        return takeWindow(argv[2], argv[3]);
    if (argc != 4) {
        fmt::print(stderr, "usage: tessaran_pictures SCRIPT DRAWING FOLDER\n");
        return 2;
    }
    const auto script = base::readFile(argv[1]);
    base::NoProgress nobody;
    const std::string drawing = std::filesystem::absolute(argv[2]).string();
    const QString folder = QString::fromStdString(std::filesystem::absolute(argv[3]).string());
    const std::filesystem::path here = std::filesystem::current_path();
    test::DialogBench bench;
    auto opened = console::openDrawing(drawing, nobody);
    if (!script || !opened) {
        fmt::print(stderr, "{}\n", script ? opened.error().message() : script.error().message());
        return 2;
    }
    bench.host().workspace().add(std::move(opened->database));
    std::filesystem::current_path(here); // the bench stands in a folder of its own
    return Photographer(bench, folder).run(base::split(*script, '\n')) ? 0 : 1;
}
