#include <gtest/gtest.h>

#include "tools/orvane/help/ManPage.h"
#include "unit/tools/orvane/help/SmallTool.h"

TEST(ManPageTest, SaysWhatTheHelpSays) {
    EXPECT_EQ(orvane::tool::manPageOf(SmallTool().App(), "1.2.3"),
              R"(.TH SMALL 1 "" "XPlaneOrvane 1.2.3" "User Commands"
.SH NAME
small \- Do small things
.SH SYNOPSIS
.B small
.RI [ OPTION ...]
.I COMMAND
.RI [ ARGUMENT ...]
.SH DESCRIPTION
Do small things.
.PP
A paragraph of
two lines.
.SH OPTIONS
These go before or after the command.
.TP
\fB\-h\fR, \fB\-\-help\fR
Print this help message and exit.
.TP
\fB\-\-json\fR
Print JSON.
.TP
\fB\-\-host\fR \fIHOST\fR
The host; here if not given.
.SH COMMANDS
.SS "small play FILE"
Play a \(dqfile\(dq.
.TP
\fIFILE\fR
What to play.
.TP
\fB\-i\fR, \fB\-\-input\fR \fIFILE|sine|square\fR
What to mix in.
.PP
It has a\ebackslash.
.PP
Examples:
.EX
small play \-
\&.x
.EE
.SS "small group"
Do more.
.SS "small group hold [NAME...]"
Hold names.
.TP
\fINAME\fR
Some names.
.TP
\fB\-\-hard\fR
Hold hard.
.SS "small help"
Help.
.SH EXIT STATUS
.EX
0  done
.EE
.SH EXAMPLES
.EX
small play x
.EE
)");
}
