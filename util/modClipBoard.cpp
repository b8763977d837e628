// Every statement goes to the clipboard before it runs, so that it can be pasted into an error report.
#include "util/modClipBoard.h"

void ClipBoardSetzen(desktop::Clipboard &zwischenablage, const QString &text)
{
    zwischenablage.clear();
    zwischenablage.setText(text);
}
