#include "board/varo/settings/groupsTime.h"

namespace varo {

const Group<varoLib_s_sntpTimeZone>& timeZoneGroup() {
    using Record = varoLib_s_sntpTimeZone;
    static const auto& group = *new Group<Record>("time_zone", Rows::single,
                                                  Record{
                                                      .name = "NONE",
                                                      .offset = 0,
                                                      .dstOffset = 0,
                                                      .dstSMonth = 3,
                                                      .dstSWeek = 4,
                                                      .dstSDayInWeek = 7,
                                                      .dstSTime = 200,
                                                      .dstEMonth = 10,
                                                      .dstEWeek = 5,
                                                      .dstEDayInWeek = 7,
                                                      .dstETime = 200,
                                                      .preset = 0,
                                                  },
                                                  {
                                                      column("name", &Record::name),
                                                      column("offset_minutes", &Record::offset),
                                                      column("dst_minutes", &Record::dstOffset),
                                                      column("start_month", &Record::dstSMonth),
                                                      column("start_week", &Record::dstSWeek),
                                                      column("start_day", &Record::dstSDayInWeek),
                                                      column("start_time", &Record::dstSTime),
                                                      column("end_month", &Record::dstEMonth),
                                                      column("end_week", &Record::dstEWeek),
                                                      column("end_day", &Record::dstEDayInWeek),
                                                      column("end_time", &Record::dstETime),
                                                  });
    return group;
}

const Group<rpcSntpConfigHost>& ntpGroup() {
    using Record = rpcSntpConfigHost;
    using Server = rpcSntpSrvHost;
    static const auto& group =
        *new Group<Record>("ntp", Rows::bySource, Record{},
                           {
                               column("mode", &Record::mode),
                               entries("server", &Record::servers,
                                       {
                                           column("host", &Server::host),
                                           column("version", &Server::ntpVersion),
                                           column("preferred", &Server::priority),
                                           column("address_type", &Server::addressType),
                                       }),
                           });
    return group;
}

}  // namespace varo
