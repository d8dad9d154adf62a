// `quillora` with no command becomes the window program: run the real
// binaries and catch, on the single-copy socket, what a later start hands
// over to the running window.
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>

#include "app/gui/single_instance.h"
#include "tests/temp_dir.h"

namespace quillora {
namespace {

// Runs `program ARGS` with a display and `runtime` as XDG_RUNTIME_DIR; its
// exit code, or -1 when it did not end.
int Run(const QString& program, const QStringList& args, const std::string& runtime,
        const QString& path = qEnvironmentVariable("PATH")) {
  QProcess process;
  QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
  env.insert("XDG_RUNTIME_DIR", QString::fromStdString(runtime));
  env.insert("QT_QPA_PLATFORM", "offscreen");
  env.insert("PATH", path);
  process.setProcessEnvironment(env);
  process.start(program, args);
  if (!process.waitForFinished(20000)) {
    process.kill();
    return -1;
  }
  return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
}

class WindowLaunchTest : public QObject {
  Q_OBJECT

 private slots:
  void NoCommandHandsOverToTheRunningWindow() {
    testing::TempDir runtime;
    // The window's own folder in the runtime folder, as the window makes it.
    QVERIFY(QDir().mkdir(QString::fromStdString(runtime.File("quillora"))));
    QVERIFY(QFile::setPermissions(QString::fromStdString(runtime.File("quillora")),
                                  QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    SingleInstance first(QString::fromStdString(runtime.File("quillora/quillora.sock")));
    QVERIFY(first.Listen());
    QSignalSpy spy(&first, &SingleInstance::CommandLineReceived);
    const QString data = QString::fromStdString(runtime.File("data"));
    struct Case {
      QStringList args;
      QStringList handed;
    };
    const Case cases[] = {
        {{"--data-dir", data}, {}},
        {{"--data-dir", data, "--yes", "2024 q4.qra"}, {"2024 q4.qra"}},
        {{"--data-dir", data, "-odd.qrd"}, {"-odd.qrd"}},  // a file, not an option
    };
    for (const Case& c : cases) {
      const int before = static_cast<int>(spy.count());
      QCOMPARE(Run(QUILLORA_BINARY, c.args, runtime.path()), 0);
      QTRY_COMPARE(spy.count(), before + 1);
      QCOMPARE(spy.last().at(0).toStringList(), c.handed);
    }
  }

  void WithoutTheWindowProgramSaysSo() {
    testing::TempDir folder;
    const QString alone = QString::fromStdString(folder.File("quillora"));
    QVERIFY(QFile::copy(QUILLORA_BINARY, alone));
    QVERIFY(QFile::setPermissions(alone, QFile::ReadOwner | QFile::ExeOwner));
    QCOMPARE(Run(alone, {"--data-dir", QString::fromStdString(folder.File("d"))},
                 folder.path(), QString::fromStdString(folder.path())),
             1);
  }
};

}  // namespace
}  // namespace quillora

QTEST_GUILESS_MAIN(quillora::WindowLaunchTest)
#include "window_launch_test.moc"
