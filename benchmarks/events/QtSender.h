#pragma once

#include <QObject>

/// Sends a text to directly connected slots, as the bus sends a message to its listeners.
class QtSender : public QObject {
  Q_OBJECT

 signals:
  void reported(int level, const char* text);
};

/// Counts what it receives.
class QtReceiver : public QObject {
  Q_OBJECT

 public slots:
  void receive(int level, const char* text);

 public:
  long total = 0;
};
