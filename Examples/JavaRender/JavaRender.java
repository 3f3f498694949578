// java JavaRender CLASS WIDTH HEIGHT [name=value ...] < in.rgb > out.rgb: one effect over one frame of raw RGB, through the C interface
// and JNA.

import com.sun.jna.Library;
import com.sun.jna.Memory;
import com.sun.jna.Native;
import com.sun.jna.NativeLong;
import com.sun.jna.Pointer;
import com.sun.jna.Structure;
import java.util.Arrays;

public class JavaRender {
    @Structure.FieldOrder({"size", "format", "width", "height", "matrix", "fullRange", "planes", "strides"})
    public static class Frame extends Structure {
        public static final int RGB8 = 100;
        public NativeLong size;
        public int format, width, height, matrix, fullRange;
        public Pointer[] planes = new Pointer[4];
        public NativeLong[] strides = new NativeLong[4];

        public Frame(Memory pixels, int width, int height) {
            this.width = width;
            this.height = height;
            format = RGB8;
            planes[0] = pixels;
            Arrays.fill(strides, new NativeLong(0));
            strides[0] = new NativeLong(width * 3L);
            size = new NativeLong(size());
        }
    }

    public interface QV extends Library {
        Pointer qv_filter_create(String name, byte[] error, NativeLong size);
        void qv_filter_destroy(Pointer filter);
        int qv_filter_set(Pointer filter, String name, String value, byte[] error, NativeLong size);
        int qv_filter_set_input(Pointer filter, String input, Pointer image, byte[] error, NativeLong size);
        void qv_filter_set_moment(Pointer filter, double time, double start, double end);
        Pointer qv_filter_output(Pointer filter, byte[] error, NativeLong size);
        Pointer qv_image_from_frame(Frame frame, Pointer release, Pointer user, byte[] error, NativeLong size);
        void qv_image_destroy(Pointer image);
        int qv_render(Pointer context, Pointer image, Frame frame, byte[] error, NativeLong size);
    }

    private static final byte[] error = new byte[256];
    private static final NativeLong ERROR_SIZE = new NativeLong(error.length);

    private static Pointer made(Pointer pointer) throws Exception {
        if (pointer == null) throw new Exception(Native.toString(error, "UTF-8"));
        return pointer;
    }

    private static void done(int result) throws Exception {
        if (result == 0) throw new Exception(Native.toString(error, "UTF-8"));
    }

    private static void run(String[] arguments) throws Exception {
        if (arguments.length < 3) throw new Exception("give a class, a width and a height");
        QV qv = Native.load("qv", QV.class);
        int width = Integer.parseInt(arguments[1]), height = Integer.parseInt(arguments[2]);
        int bytes = width * height * 3;
        Memory pixels = new Memory(bytes);
        pixels.write(0, System.in.readNBytes(bytes), 0, bytes);
        Frame frame = new Frame(pixels, width, height);

        Pointer filter = made(qv.qv_filter_create(arguments[0], error, ERROR_SIZE));
        for (int i = 3; i < arguments.length; ++i) {
            String[] setting = arguments[i].split("=", 2);
            if (setting.length < 2) throw new Exception(arguments[i] + " is not name=value");
            done(qv.qv_filter_set(filter, setting[0], setting[1], error, ERROR_SIZE));
        }
        Pointer image = made(qv.qv_image_from_frame(frame, null, null, error, ERROR_SIZE));
        done(qv.qv_filter_set_input(filter, "frame", image, error, ERROR_SIZE));
        qv.qv_filter_set_moment(filter, 1, 0, 3);
        Pointer output = made(qv.qv_filter_output(filter, error, ERROR_SIZE));
        done(qv.qv_render(null, output, frame, error, ERROR_SIZE));
        qv.qv_image_destroy(output);
        qv.qv_image_destroy(image);
        qv.qv_filter_destroy(filter);
        System.out.write(pixels.getByteArray(0, bytes));
        System.out.flush();
    }

    public static void main(String[] arguments) {
        try {
            run(arguments);
        } catch (Exception exception) {
            System.err.println("JavaRender: " + exception.getMessage());
            System.exit(1);
        }
    }
}
