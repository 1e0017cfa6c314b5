#pragma once
// Runs page computations on QThreadPool::globalInstance() and hands each result back to the GUI
// thread by a queued call.
//
// A task and its result cross threads only through this class's own std::mutex, never inside a
// Qt object: Debian's Qt is not built for ThreadSanitizer, so the locks of the pool and of the
// event queue are invisible to it, while ours are seen. The pool runs a lambda without captures
// that takes the next task from the queue; the pool thread posts a bare queued call, and the GUI
// thread collects the results under the mutex.
//
// One instance per application, made on the GUI thread on first use and owned by the
// application object. Tasks still running when it goes finish and their results are dropped.

#include <QObject>
#include <QPointer>
#include <functional>
#include <map>

#include "ui/pages/ui_page_waveform.h"

namespace nal {

class ui_page_task_runner_t : public QObject {
  Q_OBJECT

 public:
  // Must own everything it reads (a snapshot); runs on a pool thread. A std::exception it throws
  // becomes the result's error text.
  using task_t = std::function<ui_page_waveform_t()>;
  // Runs on the GUI thread.
  using done_t = std::function<void(ui_page_waveform_t)>;

  // GUI thread.
  static ui_page_task_runner_t& instance();
  ~ui_page_task_runner_t() override;

  // GUI thread. Queues `task`; when it ends, `done` gets its result unless `receiver` is gone.
  void start(QObject* receiver, task_t task, done_t done);

 private slots:
  void _deliver();

 private:
  explicit ui_page_task_runner_t(QObject* parent);
  // Pool thread: one queued task.
  static void _run_next();

  struct receiver_t {
    QPointer<QObject> object;
    done_t done;
  };
  // GUI thread only.
  std::map<uint64, receiver_t> _receivers;
  uint64 _next_id = 0;
};

}  // namespace nal
