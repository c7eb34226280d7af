<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fa">
<context>
    <name></name>
    <message id="WelcomeWhat">
        <source></source>
        <translation>این پنجره آنچه را در یک برنامهٔ مالی برنامه‌ریزی شده است نشان می‌دهد: پرداخت‌ها و درآمدهای سررسید گذشته، امروز و روزهای آینده.</translation>
    </message>
    <message id="WelcomeFolder">
        <source></source>
        <translation>فهرست همین که برنامه آن را در این پوشه ذخیره کند نمایان می‌شود:</translation>
    </message>
    <message id="WelcomeDocumentation">
        <source></source>
        <translation>مستندات Korvel Today شرح می‌دهد که یک برنامه چگونه وصل می‌شود.</translation>
    </message>
    <message id="WelcomeFound">
        <source></source>
        <translation>فایلی را انتخاب کنید تا ببینید در آن چه برنامه‌ریزی شده است:</translation>
    </message>
    <message id="WelcomeOnlyRead">
        <source></source>
        <translation>فایل فقط خوانده می‌شود و هرگز تغییر نمی‌کند.</translation>
    </message>
    <message id="WelcomeReading">
        <source></source>
        <translation>در حال خواندن فایل…</translation>
    </message>
    <message id="WelcomeShowFile">
        <source></source>
        <translation>نمایش %1، %2</translation>
    </message>
    <message id="TodayViewEmtyText">
        <source></source>
        <translation>موردی سررسید نشده</translation>
    </message>
    <message id="ShowAllTitle">
        <source></source>
        <translation>نمایش همه…</translation>
    </message>
    <message id="ResheduleTomorrow">
        <source></source>
        <translation>فردا</translation>
    </message>
    <message id="Reshedule3Days">
        <source></source>
        <translation>۳ روز دیگر</translation>
    </message>
    <message id="ResheduleNextWeek">
        <source></source>
        <translation>هفتهٔ آینده</translation>
    </message>
    <message id="DeleteFutureEnteres">
        <source></source>
        <translation>این مورد و همهٔ موارد بعدی</translation>
    </message>
    <message id="DeleteCurrentPlanButtonTitle">
        <source></source>
        <translation>فقط این مورد</translation>
    </message>
    <message id="CancelButtonTitle">
        <source></source>
        <translation>لغو</translation>
    </message>
    <message id="FailureTitle">
        <source></source>
        <translation>فهرست بار نشد</translation>
    </message>
    <message id="FailureText">
        <source></source>
        <translation>داده‌های شما دست‌نخورده است. Korvel Today خودش دوباره تلاش می‌کند، و همین که چیزی در پوشهٔ مشترک تغییر کند.</translation>
    </message>
    <message id="FailureTryAgain">
        <source></source>
        <translation>تلاش دوباره</translation>
    </message>
    <message id="FailureExplain">
        <source></source>
        <translation>مشکل چیست؟</translation>
    </message>
    <message id="PaidButtonHelp">
        <source></source>
        <translation>علامت‌گذاری به‌عنوان پرداخت‌شده</translation>
    </message>
    <message id="LaterButtonHelp">
        <source></source>
        <translation>به تعویق انداختن</translation>
    </message>
    <message id="InfoButtonHelp">
        <source></source>
        <translation>باز کردن</translation>
    </message>
    <message id="DeleteButtonHelp">
        <source></source>
        <translation>حذف</translation>
    </message>
    <message id="AddButtonHelp">
        <source></source>
        <translation>افزودن تراکنش</translation>
    </message>
    <message id="OverdueDescription">
        <source></source>
        <translation>سررسید گذشته</translation>
    </message>
    <message id="OpenRowDescription">
        <source></source>
        <translation>کنش‌ها نمایان‌اند</translation>
    </message>
    <message id="OverdueCountText">
        <source></source>
        <translation>سررسید گذشته: %L1</translation>
    </message>
    <message id="DueTodayCountText">
        <source></source>
        <translation>سررسید امروز: %L1</translation>
    </message>
    <message id="BothCountsText">
        <source></source>
        <translation>%1، %2</translation>
    </message>
    <message id="NothingIsDueText">
        <source></source>
        <translation>موردی سررسید نشده</translation>
    </message>
    <message id="TrayShowTitle">
        <source></source>
        <translation>نمایش</translation>
    </message>
    <message id="TrayAddTitle">
        <source></source>
        <translation>افزودن تراکنش</translation>
    </message>
    <message id="TrayOpenApplicationTitle">
        <source></source>
        <translation>باز کردن برنامهٔ مالی</translation>
    </message>
    <message id="TrayShowFolderTitle">
        <source></source>
        <translation>نمایش پوشهٔ مشترک</translation>
    </message>
    <message id="TrayQuitTitle">
        <source></source>
        <translation>خروج</translation>
    </message>
    <message id="NotificationOpenTitle">
        <source></source>
        <translation>باز کردن</translation>
    </message>
    <message id="NotificationNotTodayTitle">
        <source></source>
        <translation>امروز نه</translation>
    </message>
</context>
</TS>
