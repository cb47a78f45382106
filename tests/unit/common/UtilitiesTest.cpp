#include <array>
#include <cstdint>
#include <ostream>
#include <string>

#include <gtest/gtest.h>

#include "common/Utilities.h"
#include "support/FakeWallClock.h"

namespace {

struct SocketErrorText {
    int code;
    const char* text;
};

void PrintTo(const SocketErrorText& row, std::ostream* out) {
    *out << row.code;
}

constexpr std::array<SocketErrorText, 95> kSocketErrorTexts{{
    {6, "WSA_INVALID_HANDLE - Specified event object handle is invalid."},
    {8, "WSA_NOT_ENOUGH_MEMORY - Insufficient memory available."},
    {87, "WSA_INVALID_PARAMETER - One or more parameters are invalid."},
    {995, "WSA_OPERATION_ABORTED - Overlapped operation aborted."},
    {996, "WSA_IO_INCOMPLETE - Overlapped I/O event object not in signaled state."},
    {997, "WSA_IO_PENDING - Overlapped operations will complete later."},
    {10004, "WSAEINTR - Interrupted function call."},
    {10009, "WSAEBADF - File handle is not valid."},
    {10013, "WSAEACCES - Permission denied."},
    {10014, "WSAEFAULT - Bad address."},
    {10022, "WSAEINVAL - Invalid argument."},
    {10024, "WSAEMFILE - Too many open files."},
    {10035, "WSAEWOULDBLOCK - Resource temporarily unavailable."},
    {10036, "WSAEINPROGRESS - Operation now in progress."},
    {10037, "WSAEALREADY - Operation already in progress."},
    {10038, "WSAENOTSOCK - Socket operation on nonsocket."},
    {10039, "WSAEDESTADDRREQ - Destination address required."},
    {10040, "WSAEMSGSIZE - Message too long."},
    {10041, "WSAEPROTOTYPE - Protocol wrong type for socket."},
    {10042, "WSAENOPROTOOPT - Bad protocol option."},
    {10043, "WSAEPROTONOSUPPORT - Protocol not supported."},
    {10044, "WSAESOCKTNOSUPPORT - Socket type not supported."},
    {10045, "WSAEOPNOTSUPP - Operation not supported."},
    {10046, "WSAEPFNOSUPPORT - Protocol family not supported."},
    {10047, "WSAEAFNOSUPPORT - Address family not supported by protocol family."},
    {10048, "WSAEADDRINUSE - Address already in use."},
    {10049, "WSAEADDRNOTAVAIL - Cannot assign requested address."},
    {10050, "WSAENETDOWN - Network is down."},
    {10051, "WSAENETUNREACH - Network is unreachable."},
    {10052, "WSAENETRESET - Network dropped connection on reset."},
    {10053, "WSAECONNABORTED - Software caused connection abort."},
    {10054, "WSAECONNRESET - Connection reset by peer."},
    {10055, "WSAENOBUFS - No buffer space available."},
    {10056, "WSAEISCONN - Socket is already connected."},
    {10057, "WSAENOTCONN - Socket is not connected."},
    {10058, "WSAESHUTDOWN - Cannot send after socket shutdown."},
    {10059, "WSAETOOMANYREFS - Too many references."},
    {10060, "WSAETIMEDOUT - Connection timed out."},
    {10061, "WSAECONNREFUSED - Connection refused."},
    {10062, "WSAELOOP - Cannot translate name."},
    {10063, "WSAENAMETOOLONG - Name too long."},
    {10064, "WSAEHOSTDOWN - Host is down."},
    {10065, "WSAEHOSTUNREACH - No route to host."},
    {10066, "WSAENOTEMPTY - Directory not empty."},
    {10067, "WSAEPROCLIM - Too many processes."},
    {10068, "WSAEUSERS - User quota exceeded."},
    {10069, "WSAEDQUOT - Disk quota exceeded."},
    {10070, "WSAESTALE - Stale file handle reference."},
    {10071, "WSAEREMOTE - Item is remote."},
    {10091, "WSASYSNOTREADY - Network subsystem is unavailable."},
    {10092, "WSAVERNOTSUPPORTED - Winsock.dll version out of range."},
    {10093, "WSANOTINITIALISED - Successful WSAStartup not yet performed."},
    {10101, "WSAEDISCON - Graceful shutdown in progress."},
    {10102, "WSAENOMORE - No more results."},
    {10103, "WSAECANCELLED - Call has been canceled."},
    {10104, "WSAEINVALIDPROCTABLE - Procedure call table is invalid."},
    {10105, "WSAEINVALIDPROVIDER - Service provider is invalid."},
    {10106, "WSAEPROVIDERFAILEDINIT - Service provider failed to initialize."},
    {10107, "WSASYSCALLFAILURE - System call failure."},
    {10108, "WSASERVICE_NOT_FOUND - Service not found."},
    {10109, "WSATYPE_NOT_FOUND - Class type not found."},
    {10110, "WSA_E_NO_MORE - No more results."},
    {10111, "WSA_E_CANCELLED - Call was canceled."},
    {10112, "WSAEREFUSED - Database query was refused."},
    {11001, "WSAHOST_NOT_FOUND - Host not found."},
    {11002, "WSATRY_AGAIN - Nonauthoritative host not found."},
    {11003, "WSANO_RECOVERY - This is a nonrecoverable error."},
    {11004, "WSANO_DATA - Valid name, no data record of requested type."},
    {11005, "WSA_QOS_RECEIVERS - QoS receivers."},
    {11006, "WSA_QOS_SENDERS - QoS senders."},
    {11007, "WSA_QOS_NO_SENDERS - No QoS senders."},
    {11008, "WSA_QOS_NO_RECEIVERS - QoS no receivers."},
    {11009, "WSA_QOS_REQUEST_CONFIRMED - QoS request confirmed."},
    {11010, "WSA_QOS_ADMISSION_FAILURE - QoS admission error."},
    {11011, "WSA_QOS_POLICY_FAILURE - QoS policy failure."},
    {11012, "WSA_QOS_BAD_STYLE - QoS bad style."},
    {11013, "WSA_QOS_BAD_OBJECT - QoS bad object."},
    {11014, "WSA_QOS_TRAFFIC_CTRL_ERROR - QoS traffic control error."},
    {11015, "WSA_QOS_GENERIC_ERROR - QoS generic error."},
    {11016, "WSA_QOS_ESERVICETYPE - QoS service type error."},
    {11017, "WSA_QOS_EFLOWSPEC - QoS flowspec error."},
    {11018, "WSA_QOS_EPROVSPECBUF - Invalid QoS provider buffer."},
    {11019, "WSA_QOS_EFILTERSTYLE - Invalid QoS filter style."},
    {11020, "WSA_QOS_EFILTERTYPE - Invalid QoS filter type."},
    {11021, "WSA_QOS_EFILTERCOUNT - Incorrect QoS filter count."},
    {11022, "WSA_QOS_EOBJLENGTH - Invalid QoS object length."},
    {11023, "WSA_QOS_EFLOWCOUNT - Incorrect QoS flow count."},
    {11024, "WSA_QOS_EUNKOWNPSOBJ - Unrecognized QoS object."},
    {11025, "WSA_QOS_EPOLICYOBJ - Invalid QoS policy object."},
    {11026, "WSA_QOS_EFLOWDESC - Invalid QoS flow descriptor."},
    {11027, "WSA_QOS_EPSFLOWSPEC - Invalid QoS provider-specific flowspec."},
    {11028, "WSA_QOS_EPSFILTERSPEC - Invalid QoS provider-specific filterspec."},
    {11029, "WSA_QOS_ESDMODEOBJ - Invalid QoS shape discard mode object."},
    {11030, "WSA_QOS_ESHAPERATEOBJ - Invalid QoS shaping rate object."},
    {11031, "WSA_QOS_RESERVED_PETYPE - Reserved policy QoS element type."},
}};

bool isListed(int code) {
    for (const SocketErrorText& row : kSocketErrorTexts) {
        if (row.code == code) {
            return true;
        }
    }
    return false;
}

class UtilitiesTest : public testing::Test {
protected:
    FakeWallClock clock;
    Utilities utilities;
};

class UtilitiesSocketErrorTest : public testing::TestWithParam<SocketErrorText> {
protected:
    Utilities utilities;
};

TEST_P(UtilitiesSocketErrorTest, HasTheTextOfTheTable) {
    EXPECT_EQ(utilities.GetSocketErrorMsg(GetParam().code), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(Codes, UtilitiesSocketErrorTest, testing::ValuesIn(kSocketErrorTexts),
                         [](const auto& row) { return std::to_string(row.param.code); });

TEST_F(UtilitiesTest, KnowsNoCodeBesideThoseOfTheTable) {
    for (int code = -1000; code <= 20000; ++code) {
        if (!isListed(code)) {
            ASSERT_EQ(utilities.GetSocketErrorMsg(code),
                      "Unknown Socket Error Code " + std::to_string(code));
        }
    }
}

TEST_F(UtilitiesTest, NamesAnUnknownCodeInDecimal) {
    EXPECT_EQ(utilities.GetSocketErrorMsg(111), "Unknown Socket Error Code 111");
    EXPECT_EQ(utilities.GetSocketErrorMsg(0), "Unknown Socket Error Code 0");
    EXPECT_EQ(utilities.GetSocketErrorMsg(-1), "Unknown Socket Error Code -1");
    EXPECT_EQ(utilities.GetSocketErrorMsg(2147483647), "Unknown Socket Error Code 2147483647");
    EXPECT_EQ(utilities.GetSocketErrorMsg(-2147483648), "Unknown Socket Error Code -2147483648");
}

TEST_F(UtilitiesTest, KnowsTheLargestCodeAndNotTheNext) {
    EXPECT_EQ(utilities.GetSocketErrorMsg(11031),
              "WSA_QOS_RESERVED_PETYPE - Reserved policy QoS element type.");
    EXPECT_EQ(utilities.GetSocketErrorMsg(11032), "Unknown Socket Error Code 11032");
}

TEST_F(UtilitiesTest, GivesTheSameTextsThroughItsInterface) {
    IUtilities& asInterface = utilities;
    EXPECT_EQ(asInterface.GetSocketErrorMsg(10054), "WSAECONNRESET - Connection reset by peer.");
}

TEST_F(UtilitiesTest, CountsMillisecondsSinceTheEpoch) {
    clock.Set(1'709'629'622'345'000'000);
    EXPECT_EQ(utilities.GetTimeStampMs(), 1'709'629'622'345);
}

TEST_F(UtilitiesTest, TimeStampsOneSecondApartDifferByAThousand) {
    clock.Set(1'700'000'000'000'000'000);
    const std::int64_t before = utilities.GetTimeStampMs();
    clock.Set(1'700'000'001'000'000'000);
    EXPECT_EQ(utilities.GetTimeStampMs() - before, 1000);
}

TEST_F(UtilitiesTest, DropsTheFractionOfAMillisecond) {
    clock.Set(1'999'999);
    EXPECT_EQ(utilities.GetTimeStampMs(), 1);
}

TEST_F(UtilitiesTest, TruncatesTowardsZeroBeforeTheEpoch) {
    clock.Set(-1'999'999);
    EXPECT_EQ(utilities.GetTimeStampMs(), -1);
    clock.Set(-1);
    EXPECT_EQ(utilities.GetTimeStampMs(), 0);
}

TEST_F(UtilitiesTest, FollowsTheWallClockBackwards) {
    clock.Set(2'000'000'000);
    EXPECT_EQ(utilities.GetTimeStampMs(), 2000);
    clock.Set(1'000'000'000);
    EXPECT_EQ(utilities.GetTimeStampMs(), 1000);
}

} // namespace
